#include "Core/Text/JsonWriter.h"

#include "CommandLine/Output.h"
#include "Core/Text/Decimal.h"

#include <array>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <locale>

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace brimvale::commandLine {

namespace {

/// What `write` makes of a document.
template<class Write>
std::string documentOf(Write write) {
    std::FILE *file = std::tmpfile();
    // Only a second stream on the file outlives the closing.
    std::FILE *reader = fdopen(dup(fileno(file)), "r");
    Output output(file);
    JsonWriter json(output);
    write(json);
    EXPECT_FALSE(output.finish());
    std::rewind(reader);
    std::string document;
    std::array<char, 4096> part{};
    while (const std::size_t count = std::fread(part.data(), 1, part.size(), reader))
        document.append(part.data(), count);
    std::fclose(reader);
    return document;
}

} // namespace

TEST(JsonWriter, WritesNumbersExactlyInEveryLocale) {
    struct WithComma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale(), new WithComma));
    using Integers = std::numeric_limits<std::int64_t>;
    using Doubles = std::numeric_limits<double>;
    EXPECT_EQ(documentOf([](JsonWriter &json) {
                  json.beginArray();
                  for (const std::int64_t number : {Integers::max(), Integers::min(), std::int64_t{0}})
                      json.value(number);
                  for (const double number : {0.1, 1.0 / 3, 0.1 + 0.2, 1234567.0, -0.25, 1e22, 1e300,
                                              Doubles::infinity(), Doubles::quiet_NaN()})
                      json.value(number);
                  json.end();
              }),
              "[9223372036854775807,-9223372036854775808,0,0.1,0.3333333333333333,0.30000000000000004,"
              "1234567,-0.25,1e+22,1e+300,null,null]\n");
    EXPECT_EQ(fixedDecimal(1234567.25, 1), "1234567.2");
    std::locale::global(before);
}

TEST(JsonWriter, WritesTextsLongerThanTheBuffer) {
    // Pieces of every length around the buffer's, so that no edge of it is missed.
    const std::string document = documentOf([](JsonWriter &json) {
        json.beginArray();
        for (const std::size_t length : {65'530U, 65'536U, 1U, 200'000U, 3U})
            json.value(std::string(length, 'a') + "\n" + std::string(length, 'b'));
        json.end();
    });
    const QJsonArray array = QJsonDocument::fromJson(QByteArray::fromStdString(document)).array();
    ASSERT_EQ(array.size(), 5);
    for (qsizetype i = 0; i < 5; ++i) {
        const QString text = array[i].toString();
        const qsizetype length = text.indexOf('\n');
        EXPECT_EQ(text, QString(length, 'a') + "\n" + QString(length, 'b'));
    }
    EXPECT_EQ(array[3].toString().size(), 400'001);
}

} // namespace brimvale::commandLine
