#include "exchange/csv.h"

#include <QBuffer>
#include <QTemporaryFile>

#include <gtest/gtest.h>

using namespace slipbook::exchange;

namespace {

QByteArray Written(const std::vector<QStringList>& rows, bool bom = false) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    csv::Writer writer(buffer, {.byteOrderMark = bom});
    for (const QStringList& row : rows) {
        writer.WriteRow(row);
    }
    EXPECT_TRUE(writer.Flush());
    return bytes;
}

}  // namespace

TEST(CsvWriter, QuotesWhatMustBeQuotedAndEndsLinesWithCrLf) {
    EXPECT_EQ(
        Written({{"plain", "a,b", "say \"hi\"", "two\nlines", "cr\rhere", "", "Zürich"}}),
        QByteArray("plain,\"a,b\",\"say \"\"hi\"\"\",\"two\nlines\",\"cr\rhere\",,Z\xC3\xBCrich"
                   "\r\n"));
    EXPECT_EQ(Written({{"a"}, {"b"}}, true), QByteArray("\xEF\xBB\xBF"
                                                        "a\r\nb\r\n"));
}

TEST(CsvWriter, FormulaGuardSparesNumbers) {
    EXPECT_EQ(csv::Guarded(u"=SUM(A1)"), QStringLiteral("'=SUM(A1)"));
    EXPECT_EQ(csv::Guarded(u"+cmd"), QStringLiteral("'+cmd"));
    EXPECT_EQ(csv::Guarded(u"-2+3"), QStringLiteral("'-2+3"));
    EXPECT_EQ(csv::Guarded(u"@x"), QStringLiteral("'@x"));
    EXPECT_EQ(csv::Guarded(u"\tx"), QStringLiteral("'\tx"));
    EXPECT_EQ(csv::Guarded(u"\rx"), QStringLiteral("'\rx"));
    EXPECT_EQ(csv::Guarded(u"-"), QStringLiteral("'-"));
    EXPECT_EQ(csv::Guarded(u"-,5"), QStringLiteral("'-,5"));
    for (const char16_t* number : {u"-12.5", u"-0.010", u"+3", u"-1,234.50", u"-.5", u"-1e-7"}) {
        EXPECT_EQ(csv::Guarded(number), QString::fromUtf16(number));
    }
    EXPECT_EQ(csv::Guarded(u"a=b"), QStringLiteral("a=b"));
    EXPECT_FALSE(csv::IsPlainNumber(u"1,23"));
    EXPECT_FALSE(csv::IsPlainNumber(u"1e"));
}

TEST(CsvReader, ReadsRaggedRowsBomTabsAndBothLineEnds) {
    std::vector<QStringList> rows;
    csv::ReadResult r = csv::ReadAll(
        "\xEF\xBB\xBF"
        "a,b,c\r\n1\r\n\r\nx, y ,\"q\"\"\"\n",
        rows);
    ASSERT_TRUE(r.ok) << r.error.toStdString();
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0], (QStringList{"a", "b", "c"}));
    EXPECT_EQ(rows[1], QStringList{"1"});
    EXPECT_EQ(rows[2], (QStringList{"x", " y ", "q\""}));

    rows.clear();
    r = csv::ReadAll("name\tnote\nBo\t\"a,b\"\n", rows);
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.delimiter, u'\t');
    EXPECT_EQ(rows[1], (QStringList{"Bo", "a,b"}));

    rows.clear();
    r = csv::ReadAll("a;b\n", rows, {.delimiter = csv::Delimiter::Comma});
    EXPECT_EQ(rows[0], QStringList{"a;b"});
    EXPECT_EQ(csv::GuessDelimiter("a;b;c,d"), u';');
    EXPECT_EQ(csv::GuessDelimiter("\"a\tb\",c"), u',');
}

TEST(CsvReader, NamesTheLineOfAnOpenQuoteOrBadText) {
    std::vector<QStringList> rows;
    csv::ReadResult r = csv::ReadAll("a,b\r\n\"two\r\nlines\",c\r\nd,\"open\r\nmore\r\n", rows);
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.error.startsWith(QStringLiteral("Line 4:"))) << r.error.toStdString();
    EXPECT_TRUE(r.error.contains(QStringLiteral("never closed")));
    EXPECT_EQ(rows.size(), 2u);

    rows.clear();
    r = csv::ReadAll("ok\nstill ok\nbad \xE9t\xE9\n", rows);
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.error.startsWith(QStringLiteral("Line 3:"))) << r.error.toStdString();
    EXPECT_TRUE(r.error.contains(QStringLiteral("UTF-8")));

    rows.clear();
    r = csv::ReadAll("a\nb\"c\"x,d\n", rows);
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.error.startsWith(QStringLiteral("Line 2:"))) << r.error.toStdString();

    rows.clear();
    EXPECT_TRUE(csv::ReadAll("", rows).ok);
    EXPECT_TRUE(rows.empty());
}

TEST(CsvReader, RoundTripsEveryKindOfCell) {
    const std::vector<QStringList> written = {
        {"Date", "Time", "ET", "Money", "Flag", "Notes"},
        {"2003-07-04", "10:30:00", "-0.0123456789012345", "1500.25", "true",
         "O'Brien said \"go\",\r\nthen left"},
        {"", "", "1e-7", "-12.5", "false", "Ångström ½ 日本 \n trailing "},
        {"=HYPERLINK(\"x\")", "@me", "-", "+", "\t", ""},
    };
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write(Written(written, true));
    file.seek(0);
    std::vector<QStringList> read;
    const csv::ReadResult r = csv::Read(file, [&read](const QStringList& fields, int) {
        read.push_back(fields);
        return true;
    });
    ASSERT_TRUE(r.ok) << r.error.toStdString();
    ASSERT_EQ(read.size(), written.size());
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(read[i], written[i]);
    }
    EXPECT_EQ(read[3], (QStringList{"'=HYPERLINK(\"x\")", "'@me", "'-", "'+", "'\t", ""}));
}

TEST(CsvReader, StreamsALongFileAndStopsWhenAsked) {
    QByteArray text;
    for (int i = 0; i < 20000; ++i) {
        text += "row " + QByteArray::number(i) + ",\"multi\nline\"\r\n";
    }
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    int last = 0;
    int lastLine = 0;
    const csv::ReadResult r = csv::Read(buffer, [&](const QStringList& fields, int line) {
        last = fields[0].mid(4).toInt();
        lastLine = line;
        return last < 15000;
    });
    EXPECT_TRUE(r.ok);
    EXPECT_TRUE(r.stopped);
    EXPECT_EQ(last, 15000);
    EXPECT_EQ(lastLine, 30001);
}
