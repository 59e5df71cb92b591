#include "store/currency.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace slipbook::store {

namespace {

// Rounds a decimal text (sign, digits, optional point and digits) half away from zero to four
// places. Empty on anything else.
std::optional<qint64> UnitsFromDecimal(QStringView text) {
    text = text.trimmed();
    bool negative = false;
    if (!text.isEmpty() && (text.front() == u'-' || text.front() == u'+')) {
        negative = text.front() == u'-';
        text = text.mid(1);
    }
    qint64 whole = 0;
    qint64 frac = 0;
    int fracDigits = 0;
    bool roundUp = false;
    bool seenDigit = false;
    bool seenPoint = false;
    for (QChar c : text) {
        if (c == u'.' && !seenPoint) {
            seenPoint = true;
            continue;
        }
        if (!c.isDigit()) {
            return std::nullopt;
        }
        seenDigit = true;
        const int d = c.digitValue();
        if (!seenPoint) {
            if (whole > (std::numeric_limits<qint64>::max() / 10 - 10) / 10000) {
                return std::nullopt;
            }
            whole = whole * 10 + d;
        } else if (fracDigits < 4) {
            frac = frac * 10 + d;
            ++fracDigits;
        } else if (fracDigits == 4) {
            roundUp = d >= 5;
            ++fracDigits;
        }
    }
    if (!seenDigit) {
        return std::nullopt;
    }
    for (int i = std::min(fracDigits, 4); i < 4; ++i) {
        frac *= 10;
    }
    qint64 units = whole * 10000 + frac + (roundUp ? 1 : 0);
    return negative ? -units : units;
}

}  // namespace

Currency Currency::fromDouble(double value) {
    if (!std::isfinite(value)) {
        return {};
    }
    // The value's 15-digit decimal form is what the user typed; rounding that avoids the
    // binary error of the double.
    const int magnitude = static_cast<int>(std::floor(std::log10(std::max(std::fabs(value), 1.0))));
    const QString text = QString::number(value, 'f', std::max(0, 14 - magnitude));
    return {UnitsFromDecimal(text).value_or(0)};
}

std::optional<Currency> Currency::fromText(QStringView text) {
    if (auto units = UnitsFromDecimal(text)) {
        return Currency{*units};
    }
    return std::nullopt;
}

QString Currency::toText() const {
    const bool negative = units < 0;
    const quint64 magnitude =
        negative ? 0 - static_cast<quint64>(units) : static_cast<quint64>(units);
    QString text = QString::number(magnitude / 10000);
    quint64 frac = magnitude % 10000;
    if (frac != 0) {
        QString digits = QStringLiteral("%1").arg(frac, 4, 10, QLatin1Char('0'));
        while (digits.endsWith(u'0')) {
            digits.chop(1);
        }
        text += u'.' + digits;
    }
    return negative ? u'-' + text : text;
}

}  // namespace slipbook::store
