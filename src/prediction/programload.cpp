#include "prediction/programload.h"

#include "common/numbers.h"

namespace slipbook::prediction {

namespace {

QString TextOf(const store::Query& q, int field) {
    if (field < 0 || q.IsNull(field)) {
        return QString();
    }
    switch (q.StorageOf(field)) {
        case store::Query::Storage::Integer:
            return QString::number(q.Integer(field));
        case store::Query::Storage::Real:
            return PlainNumberText(q.Real(field));
        default:
            return q.Text(field);
    }
}

QString Padded(const store::Query& q, const char* column) {
    return TextOf(q, q.FieldIndex(QString::fromLatin1(column))) + u' ';
}

bool Positive(const QString& text) {
    return LeadingNumber(text).value_or(0) > 0;
}

}  // namespace

std::optional<CarRecord> ReadCar(store::Database& db, qint64 carId) {
    store::Query q = db.OpenQuery(QStringLiteral("SELECT * FROM tblCars WHERE lCar_id = ") +
                                  QString::number(carId));
    if (!q.Next()) {
        return std::nullopt;
    }
    CarRecord car;
    car.id = carId;
    car.number = TextOf(q, q.FieldIndex(QStringLiteral("sCar_num")));
    car.name = TextOf(q, q.FieldIndex(QStringLiteral("sCar_nm")));
    car.methanol =
        TextOf(q, q.FieldIndex(QStringLiteral("sCarFuel_typ"))) == QLatin1String("METHANOL");
    return car;
}

std::optional<RunBoxes> ReadRunBoxes(store::Database& db, qint64 runId) {
    store::Query q = db.OpenQuery(QStringLiteral("SELECT * FROM tblRuns WHERE lRun_id = ") +
                                  QString::number(runId));
    if (!q.Next()) {
        return std::nullopt;
    }
    RunBoxes b;
    b.oldCorr = Padded(q, "iCorrFactor_val");
    b.quarterEt = Padded(q, "i14Mile_et");
    b.eighthEt = Padded(q, "i18Mile_et");
    b.oldEt = Positive(b.quarterEt) ? b.quarterEt : b.eighthEt;
    b.densityAlt = Padded(q, "iDensityAlt_val");
    b.timer = Padded(q, "sThrottleStop2_val");
    b.interimEt = Padded(q, "i1000Foot_et");
    b.fullEt = b.quarterEt;
    b.fullMph = Padded(q, "i14Mile_mph");
    if (!Positive(b.fullEt) || !Positive(b.fullMph)) {
        b.fullEt = b.eighthEt;
        b.fullMph = Padded(q, "i18Mile_mph");
        b.interimEt = Padded(q, "i330Foot_et");
    }
    return b;
}

SetupRows ReadSetupRows(store::Database& db, qint64 carId, QStringView category, bool eighthMile) {
    // Stored order; the programs sort for themselves where they need it.
    store::Query q = db.OpenQuery(QStringLiteral("SELECT * FROM tblCarSetup WHERE lCar_Id = ") +
                                  QString::number(carId) + QStringLiteral(" AND sSetup_cat = '") +
                                  category.toString().replace(u'\'', QStringLiteral("''")) +
                                  QStringLiteral("' AND bEighthNotQuarter = ") +
                                  (eighthMile ? QStringLiteral("-1") : QStringLiteral("0")) +
                                  QStringLiteral(" ORDER BY rowid"));
    const int da = q.FieldIndex(QStringLiteral("iDensityAlt_val"));
    const int e14 = q.FieldIndex(QStringLiteral("i14Mile_et"));
    const int e18 = q.FieldIndex(QStringLiteral("i18Mile_et"));
    const int corr = q.FieldIndex(QStringLiteral("iCorrFactor_val"));
    const int timer = q.FieldIndex(QStringLiteral("sThrottleStop2_val"));
    SetupRows rows;
    while (q.Next()) {
        SetupRow r;
        r.densityAlt = q.Number(da);
        r.quarterEt = q.Number(e14);
        r.eighthEt = q.Number(e18);
        r.corrFactor = q.Number(corr);
        if (timer >= 0 && !q.IsNull(timer)) {
            r.timer = TextOf(q, timer);
        }
        rows.push_back(r);
    }
    return rows;
}

}  // namespace slipbook::prediction
