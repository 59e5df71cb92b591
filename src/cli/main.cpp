// slipbook-calc: the calculators from the command line. Each command prints exactly the texts
// its window would show, so that results can be checked against reference values.

#include "common/numbers.h"
#include "weather/airproperties.h"

#include <QString>
#include <QStringList>

#include <cstdio>
#include <cstring>

namespace {

using slipbook::CalcResult;

struct Command {
    const char* name;
    const char* arguments;
    const char* description;
    int argumentCount;
    CalcResult<QString> (*run)(const QStringList& args);
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
        if (args.size() != c.argumentCount) {
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
