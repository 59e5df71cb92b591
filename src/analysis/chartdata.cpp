#include "analysis/chartdata.h"

#include "common/numbers.h"
#include "shell/runlist.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace slipbook::analysis {

namespace {

// The number of a cell; an infinity read from a stray text is no figure to chart.
std::optional<double> NumberOf(const store::Query& q, int field) {
    const std::optional<double> value = q.Number(field);
    if (value && !std::isfinite(*value)) {
        return std::nullopt;
    }
    return value;
}

// The run window's blank is "0": a zero is a value nobody entered.
std::optional<double> Entered(std::optional<double> value) {
    if (value && *value == 0) {
        return std::nullopt;
    }
    return value;
}

QString RunsText(int runs) {
    return runs == 1 ? QStringLiteral("1 run") : QString::number(runs) + QStringLiteral(" runs");
}

QString EtReason(Distance d) {
    return QStringLiteral("without a ") + DistanceName(d) + QStringLiteral(" ET");
}

QString MphReason(Distance d) {
    return QStringLiteral("without a ") + DistanceName(d) + QStringLiteral(" speed");
}

// A value a series needs, and the reason a run without it is left out.
struct Need {
    QString reason;
    std::function<std::optional<double>(const RunFigures&)> value;
};

// The points (first need's value as x, second's as y) of the runs that have both values.
Series Collect(const std::vector<RunFigures>& runs, const Need& first, const Need& second,
               bool xIsFirst) {
    Series s;
    std::vector<int> counts(2, 0);
    for (const RunFigures& r : runs) {
        const std::optional<double> a = first.value(r);
        if (!a) {
            ++counts[0];
            continue;
        }
        const std::optional<double> b = second.value(r);
        if (!b) {
            ++counts[1];
            continue;
        }
        s.points.push_back(xIsFirst ? ChartPoint{*a, *b, r.id} : ChartPoint{*b, *a, r.id});
    }
    const Need* needs[] = {&first, &second};
    for (int i = 0; i < 2; ++i) {
        if (counts[i] > 0) {
            s.leftOut.push_back({needs[i]->reason, counts[i]});
        }
    }
    return s;
}

std::optional<double> Time(const RunFigures& r) {
    if (!r.when.isValid()) {
        return std::nullopt;
    }
    return static_cast<double>(r.when.toMSecsSinceEpoch());
}

void SortByX(Series& s) {
    std::stable_sort(s.points.begin(), s.points.end(),
                     [](const ChartPoint& a, const ChartPoint& b) { return a.x < b.x; });
}

Histogram Bin(const std::vector<RunFigures>& runs) {
    Histogram h;
    int missing = 0;
    std::vector<std::pair<qint64, qint64>> lights;  // milliseconds, run
    for (const RunFigures& r : runs) {
        if (!r.reaction) {
            ++missing;
        } else if (*r.reaction < 0) {
            h.redLights.push_back(r.id);
        } else {
            // Reaction times are kept to the thousandth; whole milliseconds bin without
            // rounding surprises at the edges.
            lights.emplace_back(std::llround(*r.reaction * 1000.0), r.id);
        }
    }
    if (missing > 0) {
        h.leftOut.push_back({QStringLiteral("without a reaction time"), missing});
    }
    if (lights.empty()) {
        return h;
    }
    const auto [low, high] =
        std::minmax_element(lights.begin(), lights.end(),
                            [](const auto& a, const auto& b) { return a.first < b.first; });
    const qint64 lowMs = low->first;
    const qint64 highMs = high->first;
    qint64 width = 10;
    for (int step = 0; highMs / width - lowMs / width + 1 > Histogram::kMaxBins; ++step) {
        static constexpr qint64 kFactors[] = {2, 5, 10};
        width = 10 * kFactors[step % 3];
        for (int k = 0; k < step / 3; ++k) {
            width *= 10;
        }
    }
    h.width = static_cast<double>(width) / 1000.0;
    const qint64 first = lowMs / width;
    h.bins.resize(static_cast<size_t>(highMs / width - first + 1));
    for (size_t i = 0; i < h.bins.size(); ++i) {
        h.bins[i].from = static_cast<double>((first + static_cast<qint64>(i)) * width) / 1000.0;
    }
    for (const auto& [ms, id] : lights) {
        h.bins[static_cast<size_t>(ms / width - first)].runIds.push_back(id);
    }
    return h;
}

QString LeftOutOf(const std::vector<SeriesLeftOut>& leftOut, const QString& of) {
    if (leftOut.empty()) {
        return QString();
    }
    QStringList parts;
    for (const SeriesLeftOut& l : leftOut) {
        parts << RunsText(l.runs) + u' ' + l.reason;
    }
    return QStringLiteral("Left out") +
           (of.isEmpty() ? QString() : QStringLiteral(" of the ") + of) + QStringLiteral(": ") +
           parts.join(QStringLiteral(", ")) + u'.';
}

QString Formatted(double value, const char* format) {
    return FormatNumber(value, QString::fromLatin1(format));
}

QString FitText(const LineFit& fit, const QString& slopeText, const QString& atText,
                const QString& sameX) {
    if (!fit.ok) {
        if (fit.n < 2) {
            return QStringLiteral("No least-squares line: it needs 2 runs at different ") + sameX +
                   QStringLiteral(" at least, and there ") +
                   (fit.n == 1 ? QStringLiteral("is 1 run.")
                               : QStringLiteral("are ") + RunsText(fit.n) + u'.');
        }
        return QStringLiteral("No least-squares line: all ") + RunsText(fit.n) +
               QStringLiteral(" are at the same ") + sameX.chopped(1) + u'.';
    }
    QString text = QStringLiteral("Least-squares line over ") + RunsText(fit.n) +
                   QStringLiteral(": ") + slopeText + QStringLiteral("; ") + atText +
                   QStringLiteral("; ");
    if (fit.r2) {
        text += QStringLiteral("r² ") + Formatted(*fit.r2, "0.000") + u'.';
    } else {
        text += QStringLiteral("every ET is the same, so there is no r².");
    }
    return text;
}

}  // namespace

std::vector<RunFigures> ReadRunFigures(store::Database& db, const ChartScope& scope) {
    QString sql;
    if (scope.followList) {
        shell::ListContext list;
        list.carId = scope.carId;
        list.eventId = scope.eventId;
        list.trackId = scope.trackId;
        list.filterActive = scope.filterActive;
        list.filterSql = scope.filterSql;
        sql = shell::RunListSql(list);
    } else {
        sql = QStringLiteral("SELECT * FROM tblRuns WHERE lCar_id = ") +
              QString::number(scope.carId) + QStringLiteral(" ORDER BY dtRun_dt, dtRun_tm");
    }
    store::Query q = db.OpenQuery(sql);
    const auto field = [&q](const char* name) { return q.FieldIndex(QLatin1String(name)); };
    const int id = field("lRun_id");
    const int car = field("lCar_id");
    const int date = field("dtRun_dt");
    const int time = field("dtRun_tm");
    const int et14 = field("i14Mile_et");
    const int et18 = field("i18Mile_et");
    const int mph14 = field("i14Mile_mph");
    const int mph18 = field("i18Mile_mph");
    const int et60 = field("i60Foot_et");
    const int rt = field("iReactionTime_val");
    const int da = field("iDensityAlt_val");
    const int cf = field("iCorrFactor_val");
    std::vector<RunFigures> runs;
    while (q.Next()) {
        if (car >= 0 && (q.IsNull(car) || q.Value(car).toLongLong() != scope.carId)) {
            continue;
        }
        RunFigures r;
        r.id = q.Value(id).toLongLong();
        if (date >= 0 && !q.IsNull(date)) {
            const QDate day = q.Value(date).toDateTime().date();
            const QTime at =
                time >= 0 && !q.IsNull(time) ? q.Value(time).toDateTime().time() : QTime(0, 0);
            if (day.isValid()) {
                r.when = QDateTime(day, at.isValid() ? at : QTime(0, 0));
            }
        }
        r.quarterEt = Entered(NumberOf(q, et14));
        r.eighthEt = Entered(NumberOf(q, et18));
        r.quarterMph = Entered(NumberOf(q, mph14));
        r.eighthMph = Entered(NumberOf(q, mph18));
        r.sixtyFoot = Entered(NumberOf(q, et60));
        r.reaction = Entered(NumberOf(q, rt));
        r.corrFactor = Entered(NumberOf(q, cf));
        r.densityAlt = NumberOf(q, da);
        // 0 ft is a real density altitude only where the air figures were calculated.
        if (r.densityAlt && *r.densityAlt == 0 && !r.corrFactor) {
            r.densityAlt.reset();
        }
        runs.push_back(r);
    }
    return runs;
}

QString LeftOutText(const Series& series, const QString& of) {
    return LeftOutOf(series.leftOut, of);
}

void LineSums::Add(double x, double y) {
    if (n_ == 0) {
        x0_ = x;
        y0_ = y;
    }
    const double dx = x - x0_;
    const double dy = y - y0_;
    ++n_;
    sx_ += dx;
    sy_ += dy;
    sxx_ += dx * dx;
    sxy_ += dx * dy;
    syy_ += dy * dy;
    sumX_ += x;
    sumY_ += y;
}

std::optional<Line> LineSums::Fit() const {
    if (n_ < 2) {
        return std::nullopt;
    }
    const double n = n_;
    const double sxx = sxx_ - sx_ * sx_ / n;
    // Equal x give exact zeros here.
    if (!(sxx > 0)) {
        return std::nullopt;
    }
    Line line;
    line.slope = (sxy_ - sx_ * sy_ / n) / sxx;
    line.intercept = sumY_ / n - line.slope * (sumX_ / n);
    return line;
}

std::optional<double> LineSums::RSquared() const {
    if (n_ < 2) {
        return std::nullopt;
    }
    const double n = n_;
    const double sxx = sxx_ - sx_ * sx_ / n;
    const double syy = syy_ - sy_ * sy_ / n;
    const double sxy = sxy_ - sx_ * sy_ / n;
    if (!(sxx > 0) || !(syy > 0) || !std::isfinite(sxx * syy)) {
        return std::nullopt;
    }
    return std::clamp(sxy / sxx * sxy / syy, 0.0, 1.0);
}

std::optional<Line> LeastSquaresLine(const std::vector<std::pair<double, double>>& points) {
    LineSums sums;
    for (const auto& [x, y] : points) {
        sums.Add(x, y);
    }
    return sums.Fit();
}

LineFit FitLeastSquares(const std::vector<ChartPoint>& points) {
    LineFit fit;
    fit.n = static_cast<int>(points.size());
    LineSums sums;
    for (const ChartPoint& p : points) {
        sums.Add(p.x, p.y);
    }
    const std::optional<Line> line = sums.Fit();
    if (!line || !std::isfinite(line->slope) || !std::isfinite(line->intercept)) {
        return fit;
    }
    const auto [minY, maxY] = std::minmax_element(
        points.begin(), points.end(), [](const auto& a, const auto& b) { return a.y < b.y; });
    fit.ok = true;
    if (minY->y == maxY->y) {
        // A flat line; the mean of equal values may be a rounding off them, so take one.
        fit.intercept = minY->y;
        return fit;
    }
    fit.slope = line->slope;
    fit.intercept = line->intercept;
    fit.r2 = sums.RSquared();
    return fit;
}

int Histogram::Lights() const {
    int n = static_cast<int>(redLights.size());
    for (const HistogramBin& b : bins) {
        n += static_cast<int>(b.runIds.size());
    }
    return n;
}

ChartSet BuildCharts(const std::vector<RunFigures>& runs, Distance distance) {
    const bool quarter = distance == Distance::Quarter;
    const Need et{EtReason(distance),
                  [quarter](const RunFigures& r) { return quarter ? r.quarterEt : r.eighthEt; }};
    const Need mph{MphReason(distance),
                   [quarter](const RunFigures& r) { return quarter ? r.quarterMph : r.eighthMph; }};
    const Need date{QStringLiteral("without a date"), Time};
    const Need densityAlt{QStringLiteral("without density altitude"),
                          [](const RunFigures& r) { return r.densityAlt; }};
    const Need corrFactor{QStringLiteral("without a correction factor"),
                          [](const RunFigures& r) { return r.corrFactor; }};
    const Need sixtyFoot{QStringLiteral("without a 60' time"),
                         [](const RunFigures& r) { return r.sixtyFoot; }};

    ChartSet c;
    c.distance = distance;
    c.runs = static_cast<int>(runs.size());
    c.etByDensityAlt = Collect(runs, et, densityAlt, false);
    c.densityAltFit = FitLeastSquares(c.etByDensityAlt.points);
    c.etByCorrFactor = Collect(runs, et, corrFactor, false);
    c.corrFactorFit = FitLeastSquares(c.etByCorrFactor.points);
    c.etOverTime = Collect(runs, date, et, true);
    SortByX(c.etOverTime);
    c.mphOverTime = Collect(runs, date, mph, true);
    SortByX(c.mphOverTime);
    c.sixtyFootByEt = Collect(runs, et, sixtyFoot, true);
    c.reaction = Bin(runs);
    return c;
}

Distance LikelyDistance(const std::vector<RunFigures>& runs) {
    const auto quarter = std::count_if(runs.begin(), runs.end(),
                                       [](const RunFigures& r) { return r.quarterEt.has_value(); });
    const auto eighth = std::count_if(runs.begin(), runs.end(),
                                      [](const RunFigures& r) { return r.eighthEt.has_value(); });
    return eighth > quarter ? Distance::Eighth : Distance::Quarter;
}

QString DensityAltFitText(const LineFit& fit) {
    if (!fit.ok) {
        return FitText(fit, {}, {}, QStringLiteral("density altitudes"));
    }
    const double perThousand = fit.slope * 1000.0;
    QString slope = Formatted(perThousand, "0.0000") + QStringLiteral(" s per 1000 ft");
    // The prediction program states its slope this way; a racer reads both alike.
    if (std::abs(perThousand) >= 0.00005) {
        slope += QStringLiteral(" (0.01 s = ") + Formatted(0.01 / fit.slope, "#,##0") +
                 QStringLiteral(" ft)");
    }
    return FitText(fit, slope, Formatted(fit.intercept, "0.000") + QStringLiteral(" s at 0 ft"),
                   QStringLiteral("density altitudes"));
}

QString CorrFactorFitText(const LineFit& fit) {
    if (!fit.ok) {
        return FitText(fit, {}, {}, QStringLiteral("correction factors"));
    }
    // ET at a factor of 1, the standard day, says more than ET at a factor of 0.
    return FitText(
        fit,
        Formatted(fit.slope * 0.01, "0.0000") + QStringLiteral(" s per 0.01 of correction factor"),
        Formatted(fit.intercept + fit.slope, "0.000") + QStringLiteral(" s at a factor of 1.0000"),
        QStringLiteral("correction factors"));
}

QString ReactionSummaryText(const Histogram& histogram) {
    const int lights = histogram.Lights() - static_cast<int>(histogram.redLights.size());
    QString text = (lights == 1 ? QStringLiteral("1 light")
                                : QString::number(lights) + QStringLiteral(" lights")) +
                   QStringLiteral(" in bins of ") + PlainNumberText(histogram.width) +
                   QStringLiteral(" s; ");
    const size_t red = histogram.redLights.size();
    text += red == 0   ? QStringLiteral("no red light.")
            : red == 1 ? QStringLiteral("1 red light, counted apart.")
                       : QString::number(red) + QStringLiteral(" red lights, counted apart.");
    const QString leftOut = LeftOutOf(histogram.leftOut, {});
    return leftOut.isEmpty() ? text : text + u' ' + leftOut;
}

QString NoDensityAltText(Distance distance) {
    return QStringLiteral("No runs with a ") + DistanceName(distance) +
           QStringLiteral(" ET and density altitude for this car.");
}

QString NoCorrFactorText(Distance distance) {
    return QStringLiteral("No runs with a ") + DistanceName(distance) +
           QStringLiteral(" ET and a correction factor for this car.");
}

QString NoOverTimeText(Distance distance) {
    return QStringLiteral("No runs with a date and a ") + DistanceName(distance) +
           QStringLiteral(" ET or speed for this car.");
}

QString NoSixtyFootText(Distance distance) {
    return QStringLiteral("No runs with a 60' time and a ") + DistanceName(distance) +
           QStringLiteral(" ET for this car.");
}

QString NoReactionText() {
    return QStringLiteral("No runs with a reaction time for this car.");
}

}  // namespace slipbook::analysis
