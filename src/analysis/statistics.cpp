#include "analysis/statistics.h"

#include "common/numbers.h"
#include "shell/runlist.h"
#include "shell/valueformat.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace slipbook::analysis {

namespace {

const QString kNoTrack = QStringLiteral("(No track)");
const QString kNoRuns = QStringLiteral("no runs");
const QString kNeedsTwo = QStringLiteral("needs 2 runs");
constexpr QStringView kSeconds = u"0.000";
constexpr QStringView kSpeed = u"0.00";
constexpr QStringView kSigned = u"+0.000;-0.000";

std::optional<double> Positive(const std::optional<double>& v) {
    if (v && *v > 0) {
        return v;
    }
    return std::nullopt;
}

// Thousandths, so that ETs typed alike compare alike whatever their binary form.
qint64 Thousandths(double v) {
    return std::llround(v * 1000);
}

QString Noun(int n, const char* one, const char* many) {
    return QString::fromUtf8(n == 1 ? one : many);
}

void AddLeftOut(std::vector<LeftOut>& out, int count, const QString& why) {
    if (count > 0) {
        out.push_back({count, why});
    }
}

QString PercentText(double percent) {
    return FormatNumber(percent, u"0.0") + QStringLiteral(" %");
}

Figure ValueFigure(const QString& caption, std::optional<double> value, QStringView format,
                   int counted, std::vector<LeftOut> leftOut, const QString& none = kNoRuns) {
    Figure f;
    f.caption = caption;
    f.value = value;
    if (!value) {
        f.text = none;
    } else {
        f.text = format == kSigned ? SignedSecondsText(*value) : FormatNumber(*value, format);
    }
    f.counted = counted;
    f.leftOut = std::move(leftOut);
    return f;
}

// "2 of 9 (22.2 %)": the part of the runs counted that the figure names.
Figure ShareFigure(const QString& caption, int part, int counted, std::vector<LeftOut> leftOut) {
    Figure f;
    f.caption = caption;
    f.counted = counted;
    f.leftOut = std::move(leftOut);
    if (counted == 0) {
        f.text = kNoRuns;
        return f;
    }
    f.value = 100.0 * part / counted;
    f.text = QStringLiteral("%1 of %2 (%3)").arg(part).arg(counted).arg(PercentText(*f.value));
    return f;
}

std::optional<double> Smallest(const std::vector<double>& v) {
    if (v.empty()) {
        return std::nullopt;
    }
    return *std::min_element(v.begin(), v.end());
}
std::optional<double> Largest(const std::vector<double>& v) {
    if (v.empty()) {
        return std::nullopt;
    }
    return *std::max_element(v.begin(), v.end());
}

void ReactionFigures(const std::vector<RunRecord>& runs, std::vector<Figure>& out) {
    std::vector<double> times;
    int without = 0;
    int red = 0;
    for (const RunRecord& r : runs) {
        if (!r.reaction) {
            ++without;
        } else if (*r.reaction < 0) {
            ++red;
        } else {
            times.push_back(*r.reaction);
        }
    }
    const int n = static_cast<int>(times.size());
    std::vector<LeftOut> left;
    AddLeftOut(left, without, QStringLiteral("without reaction time"));
    AddLeftOut(left, red, Noun(red, "red light", "red lights"));
    out.push_back(
        ValueFigure(QStringLiteral("Best reaction time (s)"), Smallest(times), kSeconds, n, left));
    out.push_back(
        ValueFigure(QStringLiteral("Average reaction time (s)"), Mean(times), kSeconds, n, left));
    std::vector<LeftOut> noTime;
    AddLeftOut(noTime, without, QStringLiteral("without reaction time"));
    out.push_back(ShareFigure(QStringLiteral("Red lights"), red, n + red, noTime));
}

void DistanceFigures(const std::vector<RunRecord>& runs, Distance d, std::vector<Figure>& out) {
    const QString name = DistanceName(d);
    const QString head = name + QStringLiteral(": ");
    const QString noEt = QStringLiteral("without ") + name + QStringLiteral(" ET");
    std::vector<double> ets;
    std::vector<double> speeds;
    std::vector<double> overDial;
    int withoutEt = 0;
    int withoutMph = 0;
    int finishedElsewhere = 0;
    int withoutDial = 0;
    int breakouts = 0;
    int over = 0;
    int on = 0;
    for (const RunRecord& r : runs) {
        const auto et = r.Et(d);
        if (const auto mph = r.Mph(d)) {
            speeds.push_back(*mph);
        } else {
            ++withoutMph;
        }
        if (!et) {
            ++withoutEt;
            continue;
        }
        ets.push_back(*et);
        // The dial-in is for the finish line: an eighth-mile time of a quarter-mile run is none.
        if (r.Finish() != d) {
            ++finishedElsewhere;
            continue;
        }
        const auto dial = r.DialIn();
        if (!dial) {
            ++withoutDial;
            continue;
        }
        overDial.push_back(*et - *dial);
        const qint64 diff = Thousandths(*et) - Thousandths(*dial);
        breakouts += diff < 0 ? 1 : 0;
        over += diff > 0 ? 1 : 0;
        on += diff == 0 ? 1 : 0;
    }
    const int nEt = static_cast<int>(ets.size());
    std::vector<LeftOut> etLeft;
    AddLeftOut(etLeft, withoutEt, noEt);
    out.push_back(
        ValueFigure(head + QStringLiteral("best ET (s)"), Smallest(ets), kSeconds, nEt, etLeft));
    out.push_back(
        ValueFigure(head + QStringLiteral("average ET (s)"), Mean(ets), kSeconds, nEt, etLeft));
    out.push_back(ValueFigure(head + QStringLiteral("ET standard deviation (s)"),
                              SampleDeviation(ets), kSeconds, nEt, etLeft, kNeedsTwo));
    std::vector<LeftOut> mphLeft;
    AddLeftOut(mphLeft, withoutMph, QStringLiteral("without ") + name + QStringLiteral(" MPH"));
    out.push_back(ValueFigure(head + QStringLiteral("best MPH"), Largest(speeds), kSpeed,
                              static_cast<int>(speeds.size()), mphLeft));

    const int nDial = static_cast<int>(overDial.size());
    std::vector<LeftOut> dialLeft = etLeft;
    const QString other =
        DistanceName(d == Distance::Quarter ? Distance::Eighth : Distance::Quarter);
    AddLeftOut(dialLeft, finishedElsewhere, QStringLiteral("finished at ") + other);
    AddLeftOut(dialLeft, withoutDial, QStringLiteral("without dial-in"));
    out.push_back(ValueFigure(head + QStringLiteral("average ET minus dial-in (s)"), Mean(overDial),
                              kSigned, nDial, dialLeft));
    out.push_back(ValueFigure(head + QStringLiteral("standard deviation of ET minus dial-in (s)"),
                              SampleDeviation(overDial), kSeconds, nDial, dialLeft, kNeedsTwo));
    out.push_back(ShareFigure(head + QStringLiteral("breakouts (ET under dial-in)"), breakouts,
                              nDial, dialLeft));
    out.push_back(ShareFigure(head + QStringLiteral("over dial-in (ET above dial-in)"), over, nDial,
                              dialLeft));
    out.push_back(ShareFigure(head + QStringLiteral("on the dial-in"), on, nDial, dialLeft));
}

struct TrackKey {
    QString name;
    bool operator<(const TrackKey& o) const {
        // Runs without a track come last.
        const bool a = name == kNoTrack;
        const bool b = o.name == kNoTrack;
        if (a != b) {
            return b;
        }
        const int c = name.compare(o.name, Qt::CaseInsensitive);
        return c != 0 ? c < 0 : name < o.name;
    }
};

std::vector<TrackBest> Bests(const std::vector<RunRecord>& runs,
                             const QHash<qint64, QString>& trackOfEvent) {
    // Per track: for each distance the best ET and the best MPH, the first run to make it.
    std::map<TrackKey, std::array<std::array<const RunRecord*, 2>, 2>> best;
    for (const RunRecord& r : runs) {
        auto& slots = best[TrackKey{trackOfEvent.value(r.eventId, kNoTrack)}];
        for (Distance d : kDistances) {
            auto& slot = slots[static_cast<int>(d)];
            if (const auto et = r.Et(d); et && (!slot[0] || *et < *slot[0]->Et(d))) {
                slot[0] = &r;
            }
            if (const auto mph = r.Mph(d); mph && (!slot[1] || *mph > *slot[1]->Mph(d))) {
                slot[1] = &r;
            }
        }
    }
    std::vector<TrackBest> out;
    for (const auto& [track, slots] : best) {
        for (Distance d : kDistances) {
            const auto& slot = slots[static_cast<int>(d)];
            if (slot[0]) {
                out.push_back({track.name, d, false, *slot[0]->Et(d), *slot[0]});
            }
            if (slot[1]) {
                out.push_back({track.name, d, true, *slot[1]->Mph(d), *slot[1]});
            }
        }
    }
    return out;
}

GridColumn Column(const char* caption, int width, bool number) {
    GridColumn c;
    c.caption = QString::fromUtf8(caption);
    c.width = width;
    c.typeCode = number ? gridtype::Number : gridtype::Text;
    c.alignment = number ? 1 : 0;
    c.headerFollowsCells = number;
    return c;
}

QString Optional(const std::optional<double>& v, QStringView format) {
    return v ? FormatNumber(*v, format) : QString();
}

}  // namespace

QString SignedSecondsText(double seconds) {
    return Thousandths(seconds) == 0 ? QStringLiteral("0.000") : FormatNumber(seconds, kSigned);
}

QString RunDateText(const RunRecord& r) {
    return r.date.isValid() ? FormatDateTime(r.date, QStringLiteral("mm/dd/yyyy")) : QString();
}

QString RunTimeText(const RunRecord& r) {
    return r.time.isValid() ? FormatDateTime(r.time, QStringLiteral("hh:mm AMPM")) : QString();
}

QString RunNumberText(const RunRecord& r) {
    return Optional(r.runNumber, u"0");
}

QString SelectionSql(const RunSelection& selection) {
    shell::ListContext ctx;
    ctx.carId = selection.carId;
    ctx.eventId = selection.eventId;
    ctx.trackId = selection.trackId;
    ctx.filterActive = selection.filterActive;
    ctx.filterSql = selection.filterSql;
    return shell::RunListSql(ctx);
}

std::optional<double> RunRecord::Et(Distance d) const {
    return Positive(et[static_cast<int>(d)]);
}

std::optional<double> RunRecord::Mph(Distance d) const {
    return Positive(mph[static_cast<int>(d)]);
}

std::optional<Distance> RunRecord::Finish() const {
    if (Et(Distance::Quarter)) {
        return Distance::Quarter;
    }
    if (Et(Distance::Eighth)) {
        return Distance::Eighth;
    }
    return std::nullopt;
}

std::optional<double> RunRecord::DialIn() const {
    return Positive(dialIn);
}

bool RunRecord::HasWeather() const {
    return Positive(corrFactor) && densityAlt.has_value();
}

bool RunRecord::Before(const RunRecord& other) const {
    if (dateKey != other.dateKey) {
        return dateKey < other.dateKey;
    }
    if (timeKey != other.timeKey) {
        return timeKey < other.timeKey;
    }
    return id < other.id;
}

std::vector<RunRecord> ReadRuns(store::Database& db, const QString& sql) {
    store::Query q = db.OpenQuery(sql);
    const auto field = [&q](const char* name) { return q.FieldIndex(QString::fromLatin1(name)); };
    const int id = field("lRun_id");
    const int event = field("lEvent_id");
    const int num = field("lRun_num");
    const int date = field("dtRun_dt");
    const int time = field("dtRun_tm");
    const int reaction = field("iReactionTime_val");
    const int dial = field("iDialIn_val");
    const int et14 = field("i14Mile_et");
    const int et18 = field("i18Mile_et");
    const int mph14 = field("i14Mile_mph");
    const int mph18 = field("i18Mile_mph");
    const int temp = field("iTemp_val");
    const int humidity = field("iHumidity_val");
    const int baro = field("iBarometricPressure_val");
    const int da = field("iDensityAlt_val");
    const int corr = field("iCorrFactor_val");
    std::vector<RunRecord> runs;
    while (q.Next()) {
        RunRecord r;
        r.id = q.Number(id).value_or(0);
        r.eventId = q.Number(event).value_or(0);
        r.runNumber = q.Number(num);
        if (date >= 0 && !q.IsNull(date)) {
            r.dateKey = q.Text(date);
            r.date = q.Value(date).toDateTime();
        }
        if (time >= 0 && !q.IsNull(time)) {
            r.timeKey = q.Text(time);
            r.time = q.Value(time).toDateTime();
        }
        r.reaction = q.Number(reaction);
        r.dialIn = q.Number(dial);
        r.et = {q.Number(et14), q.Number(et18)};
        r.mph = {q.Number(mph14), q.Number(mph18)};
        r.temp = q.Number(temp);
        r.humidity = q.Number(humidity);
        r.barometer = q.Number(baro);
        r.densityAlt = q.Number(da);
        r.corrFactor = q.Number(corr);
        runs.push_back(std::move(r));
    }
    return runs;
}

QString LeftOutText(const std::vector<LeftOut>& leftOut) {
    QStringList parts;
    for (const LeftOut& l : leftOut) {
        parts << QString::number(l.count) + u' ' + l.why;
    }
    return parts.join(QStringLiteral(", "));
}

const Figure* Statistics::Find(QStringView caption) const {
    for (const Figure& f : figures) {
        if (f.caption == caption) {
            return &f;
        }
    }
    return nullptr;
}

std::optional<double> Mean(const std::vector<double>& values) {
    if (values.empty()) {
        return std::nullopt;
    }
    double sum = 0;
    for (double v : values) {
        sum += v;
    }
    return sum / static_cast<double>(values.size());
}

std::optional<double> SampleDeviation(const std::vector<double>& values) {
    if (values.size() < 2) {
        return std::nullopt;
    }
    const double mean = *Mean(values);
    double squares = 0;
    for (double v : values) {
        squares += (v - mean) * (v - mean);
    }
    return std::sqrt(squares / static_cast<double>(values.size() - 1));
}

Statistics ComputeStatistics(const std::vector<RunRecord>& runs,
                             const QHash<qint64, QString>& trackOfEvent) {
    Statistics s;
    s.runs = static_cast<int>(runs.size());
    Figure count;
    count.caption = QStringLiteral("Runs");
    count.value = s.runs;
    count.text = QString::number(s.runs);
    count.counted = s.runs;
    s.figures.push_back(count);
    ReactionFigures(runs, s.figures);
    for (Distance d : kDistances) {
        DistanceFigures(runs, d, s.figures);
    }
    s.bests = Bests(runs, trackOfEvent);
    return s;
}

TextTable FiguresTable(const Statistics& s) {
    TextTable t;
    t.columns = {Column("Figure", 4300, false), Column("Value", 1700, true),
                 Column("Runs", 700, true), Column("Left out", 4300, false)};
    for (const Figure& f : s.figures) {
        t.rows.push_back({f.caption, f.text, QString::number(f.counted), LeftOutText(f.leftOut)});
    }
    return t;
}

TextTable BestsTable(const Statistics& s) {
    TextTable t;
    t.columns = {Column("Track", 2000, false),
                 Column("Distance", 800, false),
                 Column("Best", 550, false),
                 Column("Value", 800, true),
                 Column("Date", 1100, true),
                 Column("Time", 1000, true),
                 Column("Run #", 600, true),
                 Column("Temp (°F)", 800, true),
                 Column("Humidity (%)", 900, true),
                 Column("Baro (in Hg)", 900, true),
                 Column("Density alt. (ft)", 1100, true),
                 Column("Corr. factor", 900, true)};
    for (const TrackBest& b : s.bests) {
        const RunRecord& r = b.run;
        t.rows.push_back({b.track, DistanceName(b.distance),
                          b.mph ? QStringLiteral("MPH") : QStringLiteral("ET"),
                          FormatNumber(b.value, b.mph ? kSpeed : kSeconds), RunDateText(r),
                          RunTimeText(r), RunNumberText(r), Optional(r.temp, u"0.0"),
                          Optional(r.humidity, u"0"), Optional(r.barometer, u"0.00"),
                          Optional(r.densityAlt, u"#,##0"), Optional(r.corrFactor, u"0.0000")});
    }
    return t;
}

QHash<qint64, QString> ReadTrackOfEvent(store::Database& db) {
    QHash<qint64, QString> names;
    store::Query tracks =
        db.OpenQuery(QStringLiteral("SELECT lTrack_id, sTrack_nm FROM tblTracks"));
    while (tracks.Next()) {
        names.insert(tracks.Integer(0), tracks.Text(1));
    }
    QHash<qint64, QString> out;
    store::Query events =
        db.OpenQuery(QStringLiteral("SELECT lEvent_id, lTrack_id FROM tblEvents"));
    while (events.Next()) {
        if (!events.IsNull(1)) {
            if (const auto it = names.constFind(events.Integer(1)); it != names.constEnd()) {
                out.insert(events.Integer(0), *it);
            }
        }
    }
    return out;
}

Statistics ReadStatistics(store::Database& db, const RunSelection& selection) {
    return ComputeStatistics(ReadRuns(db, SelectionSql(selection)), ReadTrackOfEvent(db));
}

}  // namespace slipbook::analysis
