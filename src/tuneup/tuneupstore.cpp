#include "tuneup/tuneupstore.h"

#include "common/forms.h"
#include "store/dberror.h"

namespace slipbook::tuneup {

namespace {

QString TextOf(const store::Query& q, const QString& column) {
    const int field = q.FieldIndex(column);
    if (field < 0 || q.IsNull(field)) {
        return QString();
    }
    return q.Value(field).toString();
}

TuneUpCar CarOf(const store::Query& q, qint64 id) {
    TuneUpCar car;
    car.id = id;
    car.number = TextOf(q, QStringLiteral("sCar_num"));
    car.name = TextOf(q, QStringLiteral("sCar_nm"));
    car.carbType = TextOf(q, QStringLiteral("sCarCarb_typ"));
    car.fuelType = TextOf(q, QStringLiteral("sCarFuel_typ"));
    return car;
}

TuneUpBase BaseOf(const store::Query& q) {
    TuneUpBase base;
    base.adr = TextOf(q, QStringLiteral("sBaseADR"));
    base.jet = TextOf(q, QStringLiteral("sBaseJet"));
    base.jetDiameter = TextOf(q, QStringLiteral("sBaseJetDiameter"));
    base.bypassPill = TextOf(q, QStringLiteral("sBaseBypassPill"));
    base.boost = TextOf(q, QStringLiteral("sBaseBoost"));
    for (int p = 1; p <= kNozzlePositions; ++p) {
        for (int n = 1; n <= kNozzlesPerPosition; ++n) {
            base.nozzles[p - 1][n - 1] = TextOf(q, NozzleColumn(p, n));
        }
    }
    return base;
}

QString ByIdSql(const char* table, const char* key, qint64 id) {
    return QStringLiteral("SELECT * FROM %1 WHERE %2 = ")
               .arg(QLatin1String(table), QLatin1String(key)) +
           QString::number(id);
}

store::Query OpenById(store::Database& db, const char* table, const char* key, qint64 id) {
    return db.OpenQuery(ByIdSql(table, key, id));
}

// The box's text as it is stored: without the blanks around it, and never Null.
QString Stored(const QString& text) {
    const QVariant v = TextOrNull(text);
    return v.isValid() ? v.toString() : QStringLiteral("");
}

void AddNozzles(Assignments& out, const NozzleTable& nozzles,
                std::initializer_list<NozzlePosition> order) {
    for (const NozzlePosition position : order) {
        const int p = static_cast<int>(position);
        for (int n = 1; n <= kNozzlesPerPosition; ++n) {
            out.emplace_back(NozzleColumn(p, n), Stored(nozzles[p - 1][n - 1]));
        }
    }
}

// From the ADR to the nozzle area: what car and run have in common.
Assignments TuneUpAssignments(const NewTuneUp& t) {
    Assignments out;
    out.emplace_back(QStringLiteral("sBaseADR"), Stored(t.adr));
    out.emplace_back(QStringLiteral("sBaseJet"), Stored(t.jet));
    out.emplace_back(QStringLiteral("sBaseJetDiameter"), Stored(t.jetDiameter));
    AddNozzles(out, t.nozzles,
               {NozzlePosition::Blower, NozzlePosition::Hat, NozzlePosition::Head,
                NozzlePosition::Manifold});
    out.emplace_back(QStringLiteral("sBaseBypassPill"), Stored(t.bypassPill));
    out.emplace_back(QStringLiteral("sBaseBoost"), Stored(t.boost));
    out.emplace_back(QStringLiteral("sNozzleArea"), Stored(t.nozzleArea));
    return out;
}

// Each group is one write of the row, all of them in one transaction.
SaveOutcome SaveGroups(store::Database& db, const char* table, const char* key, qint64 id,
                       const std::vector<Assignments>& groups) {
    store::Database::Transaction transaction(db);
    auto rs = db.OpenRecordset(ByIdSql(table, key, id));
    if (rs->Eof()) {
        return SaveOutcome::Missing;
    }
    for (const Assignments& group : groups) {
        rs->Edit();
        for (const auto& [column, value] : group) {
            rs->SetValue(column, value);
        }
        rs->Update();
    }
    transaction.Commit();
    return SaveOutcome::Saved;
}

}  // namespace

QString LoadFailureText(LoadFailure failure) {
    switch (failure) {
        case LoadFailure::None:
            return QString();
        case LoadFailure::Error:
            return QStringLiteral("Error loading old tune-up (1).  Perhaps no runs on file.");
        case LoadFailure::CarMissing:
            return QStringLiteral("Error loading old tune-up (2).  Contact Quadrumex.");
        case LoadFailure::RunMissing:
            return QStringLiteral("Error loading old tune-up (3).  Contact Quadrumex.");
        case LoadFailure::RunCarMissing:
            return QStringLiteral("Error loading old tune-up (4).  Contact Quadrumex.");
    }
    return QString();
}

OldTuneUp ReadOldTuneUp(store::Database& db, OldSource source, qint64 carId, qint64 runId) {
    OldTuneUp out;
    out.runId = runId;
    try {
        if (source == OldSource::Car) {
            store::Query car = OpenById(db, "tblCars", "lCar_id", carId);
            if (!car.Next()) {
                out.failure = LoadFailure::CarMissing;
                return out;
            }
            out.car = CarOf(car, carId);
            out.base = BaseOf(car);
        } else if (source == OldSource::Run) {
            if (runId == 0) {
                out.failure = LoadFailure::Error;
                return out;
            }
            store::Query run = OpenById(db, "tblRuns", "lRun_id", runId);
            if (!run.Next()) {
                out.failure = LoadFailure::RunMissing;
                return out;
            }
            const int carField = run.FieldIndex(QStringLiteral("lCar_id"));
            const qint64 runCar =
                carField < 0 || run.IsNull(carField) ? 0 : run.Value(carField).toLongLong();
            store::Query car = OpenById(db, "tblCars", "lCar_id", runCar);
            if (!car.Next()) {
                out.failure = LoadFailure::RunCarMissing;
                return out;
            }
            out.car = CarOf(car, runCar);
            out.base = BaseOf(run);
        }
    } catch (const store::DbError&) {
        out.failure = LoadFailure::Error;
    }
    return out;
}

Assignments CarSaveAssignments(const NewTuneUp& tuneUp) {
    Assignments out;
    out.emplace_back(QStringLiteral("sCarCarb_typ"), tuneUp.carbType);
    out.emplace_back(QStringLiteral("sCarFuel_typ"), tuneUp.fuelType);
    const Assignments rest = TuneUpAssignments(tuneUp);
    out.insert(out.end(), rest.begin(), rest.end());
    return out;
}

std::vector<Assignments> RunSaveGroups(const NewTuneUp& tuneUp) {
    Assignments nozzles;
    AddNozzles(nozzles, tuneUp.nozzles,
               {NozzlePosition::Hat, NozzlePosition::Manifold, NozzlePosition::Blower,
                NozzlePosition::Head});
    return {TuneUpAssignments(tuneUp), nozzles};
}

SaveOutcome SaveTuneUpToCar(store::Database& db, qint64 carId, const NewTuneUp& tuneUp) {
    return SaveGroups(db, "tblCars", "lCar_id", carId, {CarSaveAssignments(tuneUp)});
}

SaveOutcome SaveTuneUpToRun(store::Database& db, qint64 runId, const NewTuneUp& tuneUp) {
    return SaveGroups(db, "tblRuns", "lRun_id", runId, RunSaveGroups(tuneUp));
}

}  // namespace slipbook::tuneup
