// slipbook-calc: the calculators from the command line. Each command prints exactly the texts
// its window would show, so that results can be checked against reference values.

#include "common/numbers.h"
#include "prediction/calculators.h"
#include "testtune/calculators.h"
#include "tuneup/calculators.h"
#include "weather/airproperties.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <cstdio>
#include <cstring>
#include <optional>
#include <vector>

namespace {

using slipbook::CalcResult;

struct Command {
    const char* name;
    const char* arguments;
    const char* description;
    int argumentCount;  // the positional arguments, after any flags
    CalcResult<QString> (*run)(const QStringList& args);
    const char* flags = "";      // the flags it takes, space-separated, before the positionals
    bool moreArguments = false;  // further arguments (rows) may follow
};

CalcResult<QString> RunAir(const QStringList& args) {
    const auto texts = slipbook::weather::RecalculatedAirTexts(args[0], args[1], args[2]);
    if (!texts) {
        return CalcResult<QString>::failure(texts.error());
    }
    return QStringList(texts->begin(), texts->end()).join(u'\t');
}

CalcResult<QString> PlainOf(const CalcResult<double>& r) {
    if (!r) {
        return CalcResult<QString>::failure(r.error());
    }
    return slipbook::PlainNumberText(*r);
}

CalcResult<QString> RunPressureAltitudeToBarometer(const QStringList& args) {
    return PlainOf(slipbook::weather::PressureAltitudeToBarometer(args[0]));
}

CalcResult<QString> RunBarometerToPressureAltitude(const QStringList& args) {
    return PlainOf(slipbook::weather::BarometerToPressureAltitude(args[0]));
}

namespace prediction = slipbook::prediction;

QString Flag(bool on) {
    return on ? QStringLiteral("1") : QStringLiteral("0");
}

QString MessageTexts(const QList<slipbook::Message>& messages) {
    QStringList texts;
    for (const auto& m : messages) {
        texts << m.text;
    }
    return texts.join(QStringLiteral(" | "));
}

// Takes a flag off the flags that lead the arguments.
bool TakeFlag(QStringList& args, const char* flag) {
    const auto isFlag = [](const QString& a) {
        return a == QLatin1String("--eighth") || a == QLatin1String("--methanol");
    };
    for (qsizetype i = 0; i < args.size() && isFlag(args[i]); ++i) {
        if (args[i] == QLatin1String(flag)) {
            args.removeAt(i);
            return true;
        }
    }
    return false;
}

// A setup row "DA:E14:E18" or "CORR:E14:E18:TIMER"; "null" is a Null column. Empty when the
// text is not such a row.
std::optional<std::vector<std::optional<QString>>> RowFields(const QString& text, int count) {
    const QStringList parts = text.split(u':');
    if (parts.size() != count) {
        return std::nullopt;
    }
    std::vector<std::optional<QString>> fields;
    for (const QString& part : parts) {
        if (part == QLatin1String("null")) {
            fields.emplace_back();
        } else {
            fields.emplace_back(part);
        }
    }
    return fields;
}

std::optional<std::optional<double>> RowNumber(const std::optional<QString>& field) {
    if (!field) {
        return std::optional<double>();
    }
    bool ok = false;
    const double v = field->toDouble(&ok);
    if (!ok) {
        return std::nullopt;
    }
    return std::optional<double>(v);
}

CalcResult<prediction::SetupRows> ParseRows(const QStringList& texts, bool withTimer) {
    prediction::SetupRows rows;
    for (const QString& text : texts) {
        const auto fields = RowFields(text, withTimer ? 4 : 3);
        const auto bad = [&] {
            return CalcResult<prediction::SetupRows>::failure(
                QStringLiteral("bad setup row \"%1\"").arg(text));
        };
        if (!fields) {
            return bad();
        }
        prediction::SetupRow row;
        const auto first = RowNumber((*fields)[0]);
        const auto e14 = RowNumber((*fields)[1]);
        const auto e18 = RowNumber((*fields)[2]);
        if (!first || !e14 || !e18) {
            return bad();
        }
        (withTimer ? row.corrFactor : row.densityAlt) = *first;
        row.quarterEt = *e14;
        row.eighthEt = *e18;
        if (withTimer) {
            row.timer = (*fields)[3];
        }
        rows.push_back(row);
    }
    return rows;
}

CalcResult<QString> RunStandardDialIn(const QStringList& args) {
    static const QHash<QString, prediction::Fuel> fuels = {
        {QStringLiteral("gas"), prediction::Fuel::Gas},
        {QStringLiteral("methanol"), prediction::Fuel::Methanol},
        {QStringLiteral("none"), prediction::Fuel::None}};
    if (!fuels.contains(args[3])) {
        return CalcResult<QString>::failure(QStringLiteral("fuel must be gas, methanol or none"));
    }
    const prediction::StandardInputs in{args[0], args[1], args[2]};
    const auto out = prediction::StandardDialIn(in, fuels.value(args[3]));
    const auto check = prediction::StandardCheck(in);
    if (out.failed() || check.failed) {
        return CalcResult<QString>::failure(out.failed() ? out.error : check.reason);
    }
    return QStringList{out.results[0], MessageTexts(out.messages), Flag(check.enabled),
                       check.reason}
        .join(u'\t');
}

CalcResult<QString> RunDensityAltDialIn(const QStringList& given) {
    QStringList args = given;
    const bool eighth = TakeFlag(args, "--eighth");
    prediction::DensityAltInputs in;
    in.lastRunDa = args[0];
    in.lastRunEt = args[1];
    in.newDa = args[2];
    for (int i = 0; i < 3; ++i) {
        in.da[i] = args[3 + 2 * i];
        in.et[i] = args[4 + 2 * i];
    }
    const auto rows = ParseRows(args.mid(9), false);
    if (!rows) {
        return CalcResult<QString>::failure(rows.error());
    }
    const auto out = prediction::DensityAltDialIn(in, *rows, !eighth);
    if (out.failed()) {
        return CalcResult<QString>::failure(out.error);
    }
    return QStringList{out.results[0], out.info.value_or(QString()), MessageTexts(out.messages)}
        .join(u'\t');
}

CalcResult<QString> RunThrottleStop(const QStringList& given) {
    QStringList args = given;
    const bool methanol = TakeFlag(args, "--methanol");
    const bool eighth = TakeFlag(args, "--eighth");
    prediction::ThrottleStopInputs in;
    in.oldTimer = args[0];
    in.oldCorr = args[1];
    in.oldEt = args[2];
    in.newCorr = args[3];
    in.desiredEt = args[4];
    for (int i = 0; i < 2; ++i) {
        in.corr[i] = args[5 + 3 * i];
        in.et[i] = args[6 + 3 * i];
        in.timer[i] = args[7 + 3 * i];
    }
    const auto rows = ParseRows(args.mid(11), true);
    if (!rows) {
        return CalcResult<QString>::failure(rows.error());
    }
    const auto out = prediction::ThrottleStopTimer(in, *rows, !eighth, methanol);
    const auto check = prediction::ThrottleStopCheck(in, static_cast<int>(rows->size()));
    if (out.failed() || check.failed) {
        return CalcResult<QString>::failure(out.failed() ? out.error : check.reason);
    }
    return QStringList{out.results[0], out.info.value_or(QString()), MessageTexts(out.messages),
                       Flag(check.enabled), check.reason}
        .join(u'\t');
}

CalcResult<QString> RunRunCompleter(const QStringList& args) {
    const prediction::RunCompleterInputs in{args[0], args[1], args[2], args[3]};
    const auto check = prediction::RunCompleterCheck(in);
    if (check.failed) {
        return CalcResult<QString>::failure(check.reason);
    }
    // Calculate is the one way to this program, and it is off until the check passes.
    QStringList results{QString(), QString()};
    if (check.enabled) {
        const auto out = prediction::RunCompleter(in);
        if (out.failed()) {
            return CalcResult<QString>::failure(out.error);
        }
        results = out.results;
    }
    return QStringList{results[0], results[1], Flag(check.enabled), check.reason}.join(u'\t');
}

namespace tuneup = slipbook::tuneup;

CalcResult<QString> RunHolley(const QStringList& args) {
    const tuneup::HolleyInputs in{args[0], args[1], args[2], args[3]};
    const auto out = tuneup::CalcHolleyJet(in);
    if (!out) {
        return CalcResult<QString>::failure(out.error());
    }
    return QStringList{out->newJet, out->tuneAdjustMessage, out->newJetMessage,
                       Flag(tuneup::HolleyReady(in))}
        .join(u'\t');
}

CalcResult<QString> RunPrecision(const QStringList& args) {
    const tuneup::PrecisionInputs in{args[0], args[1], args[2], args[3]};
    const auto out = tuneup::CalcPrecisionJet(in);
    if (!out) {
        return CalcResult<QString>::failure(out.error());
    }
    return QStringList{out->newJet, out->tuneAdjustMessage, Flag(tuneup::PrecisionReady(in))}.join(
        u'\t');
}

CalcResult<QString> RunFuelInjection(const QStringList& args) {
    const tuneup::FuelInjectionInputs in{args[0], args[1], args[2], args[3],
                                         args[4], args[5], args[6], args[7]};
    const auto out = tuneup::CalcFuelInjection(in);
    if (!out) {
        return CalcResult<QString>::failure(out.error());
    }
    return QStringList{out->newPill, out->tuneAdjustMessage, out->newPillMessage,
                       Flag(tuneup::FuelInjectionReady(in))}
        .join(u'\t');
}

CalcResult<QString> RunNozzle(const QStringList& args) {
    bool ok = false;
    const int position = args[0].toInt(&ok);
    if (!ok || position < 1 || position > tuneup::kNozzlePositions) {
        return CalcResult<QString>::failure(QStringLiteral("POS must be 1, 2, 3 or 4"));
    }
    tuneup::NozzleTable table;
    for (int t = 0; t < tuneup::kNozzlePositions; ++t) {
        for (int n = 0; n < tuneup::kNozzlesPerPosition; ++n) {
            table[t][n] = args[1 + t * tuneup::kNozzlesPerPosition + n];
        }
    }
    const auto out = tuneup::CalcNozzleArea(table, position);
    if (!out) {
        return CalcResult<QString>::failure(out.error());
    }
    return QStringList{out->typeArea, out->typeDiameter, out->totalArea, out->totalDiameter}.join(
        u'\t');
}

namespace testtune = slipbook::testtune;

// "gas" or "methanol": whether methanol; empty for anything else.
std::optional<bool> Methanol(const QString& text) {
    if (text == QLatin1String("gas") || text == QLatin1String("methanol")) {
        return text == QLatin1String("methanol");
    }
    return std::nullopt;
}

CalcResult<QString> BadFuel() {
    return CalcResult<QString>::failure(QStringLiteral("fuel must be gas or methanol"));
}

CalcResult<QString> RunStandardDay(const QStringList& args) {
    const auto methanol = Methanol(args[3]);
    if (!methanol) {
        return BadFuel();
    }
    const testtune::StandardDayInputs in{args[0], args[1], args[2]};
    const auto out = testtune::CalcStandardDay(in, *methanol);
    if (!out) {
        return CalcResult<QString>::failure(out.error());
    }
    return QStringList{out->et, out->mph, Flag(testtune::IsStandardDayEnabled(in))}.join(u'\t');
}

CalcResult<QString> RunCorrectTime(const QStringList& args) {
    const auto methanol = Methanol(args[2]);
    if (!methanol) {
        return BadFuel();
    }
    slipbook::CalcSteps s;
    const double corr = s.Strict(args[0]);
    const double time = s.Strict(args[1]);
    if (s.failed()) {
        return CalcResult<QString>::failure(s.error());
    }
    return PlainOf(testtune::CorrectTime(corr, time, *methanol));
}

CalcResult<QString> RunIntermediateTimes(const QStringList& args) {
    const auto methanol = Methanol(args[6]);
    if (!methanol) {
        return BadFuel();
    }
    testtune::IntermediateInputs in;
    in.corr = args[0];
    for (int i = 0; i < testtune::kTimingPoints; ++i) {
        in.times[i] = args[1 + i];
    }
    const auto out = testtune::CalcIntermediateTimes(in, *methanol);
    if (!out.error.isEmpty()) {
        return CalcResult<QString>::failure(out.error);
    }
    QStringList fields(out.times.begin(), out.times.end());
    fields << Flag(testtune::IsIntermediateEnabled(in));
    return fields.join(u'\t');
}

CalcResult<QString> RunEstimatedHp(const QStringList& arguments) {
    QStringList args = arguments;
    const bool eighth = TakeFlag(args, "--eighth");
    if (args.size() > 4) {
        return CalcResult<QString>::failure(QStringLiteral("esthp takes at most 4 arguments"));
    }
    const testtune::EstimatedHpInputs in{args[0], args.value(3), args[1], args[2], eighth};
    const auto out = testtune::CalcEstimatedHP(in);
    if (!out) {
        return CalcResult<QString>::failure(out.error());
    }
    return QStringList{out->estimatedHp, out->correctedHp, out->mphHp,
                       Flag(testtune::IsEstimatedHPEnabled(in))}
        .join(u'\t');
}

CalcResult<QString> RunEstimatedEt(const QStringList& args) {
    const testtune::EstimatedEtInputs in{args[0], args[1]};
    const auto out = testtune::CalcEstimatedET(in);
    if (!out.error.isEmpty()) {
        return CalcResult<QString>::failure(out.error);
    }
    return QStringList{out.quarterEt, out.eighthEt, out.quarterMph, out.eighthMph,
                       Flag(testtune::IsEstimatedETEnabled(in))}
        .join(u'\t');
}

constexpr Command kCommands[] = {
    {"air", "TEMP HUMIDITY BAROMETER",
     "the weather window's seven figures, tab-separated: correction factor, density altitude,\n"
     "air density, vapor pressure, dry barometer, dew point, wet bulb; all \"0\" when the\n"
     "temperature or barometer is not above zero",
     3, RunAir},
    {"pa2baro", "ALTITUDE", "barometric pressure (in Hg) for a pressure altitude (feet)", 1,
     RunPressureAltitudeToBarometer},
    {"baro2pa", "BAROMETER", "pressure altitude (feet) for a barometric pressure (in Hg)", 1,
     RunBarometerToPressureAltitude},
    {"stddialin", "OLDCORR OLDET NEWCORR gas|methanol|none",
     "standard dial-in: the dial-in, the boxes raised (joined by \" | \"), whether Calculate\n"
     "is on (1 or 0) and why not",
     4, RunStandardDialIn},
    {"dadialin", "[--eighth] LASTDA LASTET NEWDA DA1 ET1 DA2 ET2 DA3 ET3 [ROW...]",
     "density altitude dial-in: the dial-in, the information line and the boxes raised. Each\n"
     "ROW is a stored setup run DA:E14:E18 (a number or null each), in stored order;\n"
     "--eighth picks the eighth-mile setup",
     9, RunDensityAltDialIn, "--eighth", true},
    {"throttlestop",
     "[--methanol] [--eighth] OLDTIMER OLDCORR OLDET NEWCORR DESIRED R1CORR R1ET R1TIMER "
     "R2CORR R2ET R2TIMER [ROW...]",
     "throttle stop timer: the new timer, the information line, the boxes raised, whether\n"
     "Calculate is on and why not. Each ROW is a stored setup run CORR:E14:E18:TIMER, in\n"
     "stored order",
     11, RunThrottleStop, "--methanol --eighth", true},
    {"runcompleter", "OLDINTERIM OLDFULLET OLDFULLMPH NEWINTERIM",
     "run completer: the estimated ET and MPH, whether Calculate is on and why not; the\n"
     "estimates are empty while Calculate is off, since the button is the program's only way in",
     4, RunRunCompleter},
    {"holley", "BASEADR NEWADR JET ADJ",
     "Holley jet change: the new jet, the tune-adjust and new-jet messages, and whether the\n"
     "calculation is ready (1 or 0; it is calculated either way)",
     4, RunHolley},
    {"precision", "BASEADR NEWADR DIAM ADJ",
     "precision jet change: the new diameter, the tune-adjust message and whether ready", 4,
     RunPrecision},
    {"fi", "AREA PILL BASEADR NEWADR BASEBOOST NEWBOOST ADJ NEWAREA",
     "fuel injection change: the new pill, the tune-adjust and pill messages and whether ready", 8,
     RunFuelInjection},
    {"nozzle", "POS N1 ... N32",
     "nozzle areas: the subtotal area and equivalent diameter of position POS (1 blower,\n"
     "2 hat, 3 head, 4 manifold), the total area and the total equivalent diameter; N1..N32\n"
     "are the diameters blower 1-8, hat 1-8, head 1-8, manifold 1-8",
     33, RunNozzle},
    {"stdday", "CORR ET MPH gas|methanol",
     "standard day correction: the standard-day ET and MPH, and whether Calculate is on\n"
     "(it is calculated either way)",
     4, RunStandardDay},
    {"correcttime", "CORR TIME gas|methanol", "one timing point corrected to the standard day", 3,
     RunCorrectTime},
    {"inttimes", "CORR T60 T330 T660 T1000 T1320 gas|methanol",
     "intermediate time analysis: the five corrected times and whether Calculate is on", 7,
     RunIntermediateTimes},
    {"esthp", "[--eighth] ET WEIGHT CORR [MPH]",
     "estimated horsepower: the estimated, corrected and MPH horsepower (empty with --eighth)\n"
     "and whether Calculate is on; --eighth takes ET as an eighth-mile time",
     3, RunEstimatedHp, "--eighth", true},
    {"estet", "HP WEIGHT",
     "estimated ET: the quarter-mile ET, eighth-mile ET, quarter-mile MPH, eighth-mile MPH\n"
     "and whether Calculate is on",
     2, RunEstimatedEt},
};

void PrintUsage() {
    std::fputs(
        "Usage: slipbook-calc COMMAND ARGUMENT...\n"
        "Prints what the program's window shows for the given input texts.\n\n"
        "Commands:\n",
        stdout);
    for (const auto& c : kCommands) {
        std::printf("  %s %s\n", c.name, c.arguments);
        QString description = QString::fromUtf8(c.description);
        description.replace(u'\n', QStringLiteral("\n      "));
        std::printf("      %s\n", description.toUtf8().constData());
    }
    std::fputs(
        "\nExit status: 0 on success; 2 on a bad argument, or an input on which the program\n"
        "would stop with a run-time error (one line on standard error says why).\n",
        stdout);
}

int Fail(const QString& reason) {
    std::fprintf(stderr, "slipbook-calc: %s\n", reason.toUtf8().constData());
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc >= 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
        PrintUsage();
        return 0;
    }
    if (argc < 2) {
        return Fail(QStringLiteral("no command given (see --help)"));
    }
    const QString name = QString::fromLocal8Bit(argv[1]);
    for (const auto& c : kCommands) {
        if (name != QLatin1String(c.name)) {
            continue;
        }
        QStringList args;
        for (int i = 2; i < argc; ++i) {
            args.append(QString::fromLocal8Bit(argv[i]));
        }
        qsizetype flags = 0;
        const QStringList known = QString::fromLatin1(c.flags).split(u' ', Qt::SkipEmptyParts);
        while (flags < args.size() && known.contains(args[flags])) {
            ++flags;
        }
        const qsizetype positional = args.size() - flags;
        if (positional < c.argumentCount || (!c.moreArguments && positional != c.argumentCount)) {
            return Fail(QStringLiteral("%1 takes %2 argument(s): %3")
                            .arg(name)
                            .arg(c.argumentCount)
                            .arg(QLatin1String(c.arguments)));
        }
        const auto result = c.run(args);
        if (!result) {
            return Fail(QStringLiteral("%1: run-time error: %2").arg(name, result.error()));
        }
        std::printf("%s\n", result->toUtf8().constData());
        return 0;
    }
    return Fail(QStringLiteral("unknown command \"%1\" (see --help)").arg(name));
}
