#include "analysis/reportcard.h"

#include "common/numbers.h"
#include "prediction/calculators.h"
#include "prediction/programload.h"
#include "prediction/setupruns.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace slipbook::analysis {

namespace {

using prediction::PaddedText;

// A setup run needs this many rows, and so does a line worth reading.
constexpr size_t kSlopeRuns = 3;
// Predictions and ETs are thousandths; this keeps 10.01 - 10.00 within 0.01.
constexpr double kSlack = 1e-9;

const QString kNoEarlierRun = QStringLiteral("no earlier run");
const QString kNeedsThree = QStringLiteral("needs 3 setup runs or 3 earlier runs");

bool SetupBefore(const SetupRun& s, const RunRecord& r) {
    return std::tie(s.dateKey, s.timeKey, s.runId) < std::tie(r.dateKey, r.timeKey, r.id);
}

prediction::SetupRow RowOf(const SetupRun& s) {
    prediction::SetupRow row;
    row.densityAlt = s.densityAlt;
    row.quarterEt = s.quarterEt;
    row.eighthEt = s.eighthEt;
    row.corrFactor = s.corrFactor;
    return row;
}

// A run standing in for a setup run: what its copy in the setup list would hold.
prediction::SetupRow RowOf(const RunRecord& r) {
    prediction::SetupRow row;
    row.densityAlt = r.densityAlt;
    row.quarterEt = r.et[static_cast<int>(Distance::Quarter)];
    row.eighthEt = r.et[static_cast<int>(Distance::Eighth)];
    row.corrFactor = r.corrFactor;
    return row;
}

// The number a program's result box shows, or why there is none.
void TakeResult(const prediction::Outcome& out, Prediction& p) {
    if (out.failed()) {
        // As the prediction window says it.
        p.why = QStringLiteral("Oops! Can't calculate: ") + out.error;
        return;
    }
    const QString text = out.results.value(0).trimmed();
    if (const auto v = StrictNumber(text); v && !text.isEmpty()) {
        p.et = *v;
    } else if (!out.messages.isEmpty()) {
        p.why = out.messages.first().text;
    } else {
        p.why = QStringLiteral("a dial-in of 0");
    }
}

Prediction Standard(const std::vector<CardRow>& rows, size_t i, prediction::Fuel fuel, Distance d) {
    Prediction p;
    if (i == 0) {
        p.why = kNoEarlierRun;
        return p;
    }
    const RunRecord& last = rows[i - 1].run;
    const RunRecord& now = rows[i].run;
    p.lastRunId = last.id;
    const prediction::StandardInputs in{PaddedText(last.corrFactor),
                                        PaddedText(last.et[static_cast<int>(d)]),
                                        prediction::ValueText(now.corrFactor)};
    if (const prediction::Check c = prediction::StandardCheck(in); !c.enabled) {
        p.why = c.reason;
        return p;
    }
    TakeResult(prediction::StandardDialIn(in, fuel), p);
    return p;
}

Prediction DensityAlt(const std::vector<CardRow>& rows, size_t i,
                      const std::vector<SetupRun>& setup, Distance d) {
    Prediction p;
    if (i == 0) {
        p.why = kNoEarlierRun;
        return p;
    }
    const RunRecord& last = rows[i - 1].run;
    const RunRecord& now = rows[i].run;
    p.lastRunId = last.id;
    prediction::SetupRows slopeRows;
    for (const SetupRun& s : setup) {
        if (SetupBefore(s, now)) {
            slopeRows.push_back(RowOf(s));
            p.slopeRunIds.push_back(s.runId);
        }
    }
    p.fromSetup = slopeRows.size() >= kSlopeRuns;
    if (!p.fromSetup) {
        slopeRows.clear();
        p.slopeRunIds.clear();
        if (i < kSlopeRuns) {
            p.why = kNeedsThree;
            return p;
        }
        for (size_t k = i - kSlopeRuns; k < i; ++k) {
            slopeRows.push_back(RowOf(rows[k].run));
            p.slopeRunIds.push_back(rows[k].run.id);
        }
    }
    p.slopeRuns = static_cast<int>(slopeRows.size());
    const bool eighth = d == Distance::Eighth;
    const prediction::DensityAltSetupBoxes boxes =
        prediction::DensityAltSetupBoxTexts(slopeRows, eighth);
    const prediction::DensityAltInputs in{boxes.da, boxes.et, PaddedText(last.densityAlt),
                                          PaddedText(last.et[static_cast<int>(d)]),
                                          prediction::ValueText(now.densityAlt)};
    if (const prediction::Check c = prediction::DensityAltCheck(in); !c.enabled) {
        p.why = c.reason;
        return p;
    }
    TakeResult(prediction::DensityAltDialIn(in, slopeRows, !eighth), p);
    return p;
}

// `earlier` holds the card's rows before this one.
Prediction LeastSquares(const std::vector<CardRow>& rows, size_t i,
                        const std::vector<SetupRun>& setup, Distance d, const LineSums& earlier) {
    Prediction p;
    const RunRecord& now = rows[i].run;
    LineSums sums;
    for (const SetupRun& s : setup) {
        const auto et = d == Distance::Quarter ? s.quarterEt : s.eighthEt;
        if (SetupBefore(s, now) && s.densityAlt && et && *et > 0) {
            sums.Add(*s.densityAlt, *et);
            p.slopeRunIds.push_back(s.runId);
        }
    }
    p.fromSetup = static_cast<size_t>(sums.Count()) >= kSlopeRuns;
    if (!p.fromSetup) {
        p.slopeRunIds.clear();
        if (i < kSlopeRuns) {
            p.why = i == 0 ? kNoEarlierRun : kNeedsThree;
            return p;
        }
        sums = earlier;
    }
    p.slopeRuns = sums.Count();
    const auto line = sums.Fit();
    if (!line) {
        p.why = QStringLiteral("the runs' density altitudes are all the same");
        return p;
    }
    p.et = RoundPlaces(line->intercept + line->slope * *now.densityAlt, 3);
    return p;
}

Prediction RacerDialIn(const RunRecord& run) {
    Prediction p;
    if (const auto dial = run.DialIn()) {
        p.et = *dial;
    } else {
        p.why = QStringLiteral("no dial-in");
    }
    return p;
}

std::vector<SetupRun> ReadDensityAltSetup(store::Database& db, qint64 carId, bool eighth) {
    // The values as the prediction window reads them; the moments from the same rows in the
    // same order.
    const prediction::SetupRows values =
        prediction::ReadSetupRows(db, carId, prediction::kDensityAltitudeSetup, eighth);
    store::Query q = db.OpenQuery(
        QStringLiteral("SELECT lRun_id, dtRun_dt, dtRun_tm FROM tblCarSetup WHERE lCar_Id = ") +
        QString::number(carId) + QStringLiteral(" AND sSetup_cat = '") +
        prediction::kDensityAltitudeSetup.toString() +
        QStringLiteral("' AND bEighthNotQuarter = ") +
        (eighth ? QStringLiteral("-1") : QStringLiteral("0")) + QStringLiteral(" ORDER BY rowid"));
    std::vector<SetupRun> out;
    for (const prediction::SetupRow& v : values) {
        if (!q.Next()) {
            break;
        }
        SetupRun s;
        s.runId = q.IsNull(0) ? 0 : q.Integer(0);
        s.dateKey = q.Text(1);
        s.timeKey = q.Text(2);
        s.densityAlt = v.densityAlt;
        s.quarterEt = v.quarterEt;
        s.eighthEt = v.eighthEt;
        s.corrFactor = v.corrFactor;
        out.push_back(std::move(s));
    }
    return out;
}

constexpr QStringView kSeconds = u"0.000";
const QString kNoRuns = QStringLiteral("no runs");

// The prediction columns of the card, in their order.
constexpr std::array<Method, 4> kCardOrder = {Method::RacerDialIn, Method::Standard,
                                              Method::DensityAlt, Method::LeastSquares};
constexpr int kFirstPrediction = 4;

GridColumn Column(const QString& caption, int width, bool number) {
    GridColumn c;
    c.caption = caption;
    c.width = width;
    c.typeCode = number ? gridtype::Number : gridtype::Text;
    c.alignment = number ? 1 : 0;
    c.headerFollowsCells = number;
    return c;
}

QString ShortName(Method m) {
    switch (m) {
        case Method::Standard:
            return QStringLiteral("Standard");
        case Method::DensityAlt:
            return QStringLiteral("Density alt.");
        case Method::LeastSquares:
            return QStringLiteral("Least sq.");
        case Method::RacerDialIn:
            break;
    }
    return QStringLiteral("Dial-in");
}

QString SlopeFrom(const CardRow& row) {
    const Prediction& da = row[Method::DensityAlt];
    const Prediction& ls = row[Method::LeastSquares];
    const auto from = [](const Prediction& p) {
        return p.fromSetup ? QStringLiteral("setup runs") : QStringLiteral("earlier runs");
    };
    if (da.slopeRuns == 0 && ls.slopeRuns == 0) {
        return QString();
    }
    if (da.slopeRuns > 0 && ls.slopeRuns > 0 && da.fromSetup == ls.fromSetup) {
        return from(da);
    }
    QStringList parts;
    if (da.slopeRuns > 0) {
        parts << QStringLiteral("density alt.: ") + from(da);
    }
    if (ls.slopeRuns > 0) {
        parts << QStringLiteral("line: ") + from(ls);
    }
    return parts.join(QStringLiteral("; "));
}

QString Percent(const std::optional<double>& v) {
    return v ? FormatNumber(*v, u"0.0") + QStringLiteral(" %") : kNoRuns;
}

}  // namespace

QString MethodName(Method m) {
    switch (m) {
        case Method::Standard:
            return QStringLiteral("Standard");
        case Method::DensityAlt:
            return QStringLiteral("Density altitude");
        case Method::LeastSquares:
            return QStringLiteral("Least squares");
        case Method::RacerDialIn:
            break;
    }
    return QStringLiteral("Racer's dial-in");
}

ReportCard BuildReportCard(const std::vector<RunRecord>& runs, const std::vector<SetupRun>& setup,
                           bool methanol, Distance distance) {
    ReportCard card;
    card.distance = distance;
    int withoutEt = 0;
    int elsewhere = 0;
    int withoutWeather = 0;
    for (const RunRecord& r : runs) {
        const auto finish = r.Finish();
        if (!finish) {
            ++withoutEt;
        } else if (*finish != distance) {
            ++elsewhere;
        } else if (!r.HasWeather()) {
            ++withoutWeather;
        } else {
            CardRow row;
            row.run = r;
            row.actual = *r.Et(distance);
            card.rows.push_back(std::move(row));
        }
    }
    const QString other =
        DistanceName(distance == Distance::Quarter ? Distance::Eighth : Distance::Quarter);
    if (withoutEt > 0) {
        card.leftOff.push_back({withoutEt, QStringLiteral("without ET")});
    }
    if (elsewhere > 0) {
        card.leftOff.push_back({elsewhere, QStringLiteral("finished at ") + other});
    }
    if (withoutWeather > 0) {
        card.leftOff.push_back({withoutWeather, QStringLiteral("without weather")});
    }
    const prediction::Fuel fuel = methanol ? prediction::Fuel::Methanol : prediction::Fuel::Gas;
    LineSums earlier;
    for (size_t i = 0; i < card.rows.size(); ++i) {
        CardRow& row = card.rows[i];
        row.predictions[static_cast<int>(Method::Standard)] =
            Standard(card.rows, i, fuel, distance);
        row.predictions[static_cast<int>(Method::DensityAlt)] =
            DensityAlt(card.rows, i, setup, distance);
        row.predictions[static_cast<int>(Method::LeastSquares)] =
            LeastSquares(card.rows, i, setup, distance, earlier);
        row.predictions[static_cast<int>(Method::RacerDialIn)] = RacerDialIn(row.run);
        earlier.Add(*row.run.densityAlt, row.actual);
    }
    return card;
}

ReportCard ReadReportCard(store::Database& db, qint64 carId, Distance distance) {
    const auto car = prediction::ReadCar(db, carId);
    if (!car) {
        ReportCard card;
        card.distance = distance;
        return card;
    }
    const std::vector<RunRecord> runs = ReadRuns(
        db, QStringLiteral("SELECT * FROM tblRuns WHERE lCar_id = ") + QString::number(carId) +
                QStringLiteral(" ORDER BY dtRun_dt, dtRun_tm, lRun_id"));
    return BuildReportCard(runs, ReadDensityAltSetup(db, carId, distance == Distance::Eighth),
                           car->methanol, distance);
}

MethodScore Score(const std::vector<CardRow>& rows, Method m, int lastRuns) {
    MethodScore score;
    const size_t first =
        lastRuns > 0 && rows.size() > static_cast<size_t>(lastRuns) ? rows.size() - lastRuns : 0;
    std::vector<double> errors;
    for (size_t i = first; i < rows.size(); ++i) {
        ++score.runs;
        const Prediction& p = rows[i][m];
        if (p.et) {
            errors.push_back(*p.et - rows[i].actual);
            continue;
        }
        auto it = std::find_if(score.leftOut.begin(), score.leftOut.end(),
                               [&p](const LeftOut& l) { return l.why == p.why; });
        if (it == score.leftOut.end()) {
            score.leftOut.push_back({1, p.why});
        } else {
            ++it->count;
        }
    }
    score.predicted = static_cast<int>(errors.size());
    if (errors.empty()) {
        return score;
    }
    double abs = 0;
    double sum = 0;
    int in01 = 0;
    int in02 = 0;
    for (double e : errors) {
        abs += std::fabs(e);
        sum += e;
        in01 += std::fabs(e) <= 0.01 + kSlack ? 1 : 0;
        in02 += std::fabs(e) <= 0.02 + kSlack ? 1 : 0;
    }
    const double n = static_cast<double>(errors.size());
    score.meanAbsError = abs / n;
    score.bias = sum / n;
    score.within01 = 100.0 * in01 / n;
    score.within02 = 100.0 * in02 / n;
    return score;
}

}  // namespace slipbook::analysis

namespace slipbook::analysis {

TextTable CardTable(const ReportCard& card) {
    TextTable t;
    t.columns = {
        Column(QStringLiteral("Date"), 1100, true), Column(QStringLiteral("Time"), 1000, true),
        Column(QStringLiteral("Run #"), 600, true), Column(QStringLiteral("ET (s)"), 800, true)};
    for (Method m : kCardOrder) {
        const QString name = ShortName(m);
        t.columns.push_back(Column(name + QStringLiteral(" (s)"), 900, true));
        t.columns.push_back(Column(name + QStringLiteral(" - ET"), 900, true));
    }
    t.columns.push_back(Column(QStringLiteral("Slope from"), 1300, false));
    for (const CardRow& row : card.rows) {
        QStringList cells = {RunDateText(row.run), RunTimeText(row.run), RunNumberText(row.run),
                             FormatNumber(row.actual, kSeconds)};
        for (Method m : kCardOrder) {
            const Prediction& p = row[m];
            cells << (p.et ? FormatNumber(*p.et, kSeconds) : QString())
                  << (p.et ? SignedSecondsText(*p.et - row.actual) : QString());
        }
        cells << SlopeFrom(row);
        t.rows.push_back(cells);
    }
    return t;
}

std::vector<QStringList> CardReasons(const ReportCard& card) {
    std::vector<QStringList> out;
    for (const CardRow& row : card.rows) {
        QStringList cells;
        for (int c = 0; c < kFirstPrediction; ++c) {
            cells << QString();
        }
        for (Method m : kCardOrder) {
            cells << row[m].why << row[m].why;
        }
        cells << QString();
        out.push_back(cells);
    }
    return out;
}

TextTable ScoreTable(const ReportCard& card, int lastRuns) {
    TextTable t;
    t.columns = {Column(QStringLiteral("Runs"), 1200, false),
                 Column(QStringLiteral("Method"), 1500, false),
                 Column(QStringLiteral("Predicted"), 900, true),
                 Column(QStringLiteral("Left out"), 3600, false),
                 Column(QStringLiteral("Mean abs. error (s)"), 1100, true),
                 Column(QStringLiteral("Bias (s)"), 900, true),
                 Column(QStringLiteral("Within 0.01 s"), 900, true),
                 Column(QStringLiteral("Within 0.02 s"), 900, true)};
    for (int span : {0, lastRuns}) {
        const QString spanText =
            span == 0 ? QStringLiteral("All runs") : QStringLiteral("Last %1 runs").arg(span);
        for (Method m : kCardOrder) {
            const MethodScore s = Score(card.rows, m, span);
            t.rows.push_back({spanText, MethodName(m),
                              QStringLiteral("%1 of %2").arg(s.predicted).arg(s.runs),
                              LeftOutText(s.leftOut),
                              s.meanAbsError ? FormatNumber(*s.meanAbsError, kSeconds) : kNoRuns,
                              s.bias ? SignedSecondsText(*s.bias) : kNoRuns, Percent(s.within01),
                              Percent(s.within02)});
        }
    }
    return t;
}

QString CardSummaryText(const ReportCard& card) {
    const QString where = DistanceName(card.distance);
    QString text =
        card.rows.empty()
            ? QStringLiteral("No run of this car finished at %1 with weather.").arg(where)
            : QStringLiteral("%1 %2 of this car finished at %3 with weather.")
                  .arg(card.rows.size())
                  .arg(card.rows.size() == 1 ? QStringLiteral("run") : QStringLiteral("runs"),
                       where);
    if (!card.leftOff.empty()) {
        text += QStringLiteral(" Left off: ") + LeftOutText(card.leftOff) + u'.';
    }
    return text;
}

}  // namespace slipbook::analysis
