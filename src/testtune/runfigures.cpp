#include "testtune/runfigures.h"

#include "common/forms.h"

namespace slipbook::testtune {

namespace {

QString Padded(const store::Query& q, const char* column) {
    return ValueText(q.Value(QString::fromLatin1(column))) + u' ';
}

}  // namespace

std::optional<CarFigures> ReadCarFigures(store::Database& db, qint64 carId) {
    store::Query q = db.OpenQuery(QStringLiteral("SELECT * FROM tblCars WHERE lCar_id = ") +
                                  QString::number(carId));
    if (!q.Next()) {
        return std::nullopt;
    }
    CarFigures car;
    car.methanol = ValueText(q.Value(QStringLiteral("sCarFuel_typ"))) == QLatin1String("METHANOL");
    car.weight = Padded(q, "iCarWeight_val");
    return car;
}

std::optional<RunFigures> ReadRunFigures(store::Database& db, qint64 runId) {
    store::Query q = db.OpenQuery(QStringLiteral("SELECT * FROM tblRuns WHERE lRun_id = ") +
                                  QString::number(runId));
    if (!q.Next()) {
        return std::nullopt;
    }
    RunFigures run;
    run.corr = Padded(q, "iCorrFactor_val");
    run.sixtyEt = Padded(q, "i60Foot_et");
    run.e330Et = Padded(q, "i330Foot_et");
    run.eighthEt = Padded(q, "i18Mile_et");
    run.e1000Et = Padded(q, "i1000Foot_et");
    run.quarterEt = Padded(q, "i14Mile_et");
    run.quarterMph = Padded(q, "i14Mile_mph");
    return run;
}

}  // namespace slipbook::testtune
