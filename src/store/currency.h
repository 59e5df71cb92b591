#pragma once

#include <QMetaType>
#include <QString>
#include <compare>
#include <optional>

namespace slipbook::store {

// Money with four decimal places, held as a whole count of ten-thousandths so that sums are
// exact. Currency columns come out of the store as this type.
struct Currency {
    qint64 units = 0;  // ten-thousandths

    static Currency fromDouble(double value);
    // Plain decimal text, with an optional sign and at most four decimals after rounding
    // ("1500", "-12.5", "0.00005" rounds half away from zero). Empty for anything else.
    static std::optional<Currency> fromText(QStringView text);
    double toDouble() const { return static_cast<double>(units) / 10000.0; }
    // Plain decimal text without trailing zeros: "1500", "12.5", "-0.0001".
    QString toText() const;

    friend Currency operator+(Currency a, Currency b) { return {a.units + b.units}; }
    friend Currency operator-(Currency a, Currency b) { return {a.units - b.units}; }
    friend auto operator<=>(const Currency&, const Currency&) = default;
};

}  // namespace slipbook::store

Q_DECLARE_METATYPE(slipbook::store::Currency)
