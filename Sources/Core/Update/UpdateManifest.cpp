#include "Core/Update/UpdateManifest.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>
#include <vector>

namespace brimvale {

namespace {

/// Reads the members of an object, and keeps the first error.
class Decoder {
public:
    explicit Decoder(QJsonObject object) : object_(std::move(object)) {}

    std::string text(const char *key) {
        const QJsonValue value = required(key);
        if (!value.isString())
            fail(wrongFormat);
        return value.toString().toStdString();
    }

    std::optional<std::string> optionalText(const char *key) {
        const QJsonValue value = object_.value(QLatin1String(key));
        return value.isUndefined() || value.isNull() ? std::nullopt : std::optional(text(key));
    }

    std::int64_t wholeNumber(const char *key) {
        const QJsonValue value = required(key);
        // For a value that is not a whole number in range, toInteger returns its argument.
        if (value.toInteger(0) != value.toInteger(1))
            fail(wrongFormat);
        return value.toInteger();
    }

    QUrl url(const char *key) {
        QUrl url(QString::fromStdString(text(key)), QUrl::StrictMode);
        if (!url.isValid())
            fail(wrongFormat);
        return url;
    }

    [[nodiscard]] const std::optional<UpdateFailure> &failure() const { return failure_; }

    static constexpr const char *wrongFormat =
        "The data couldn\u2019t be read because it isn\u2019t in the correct format.";
    static constexpr const char *missing = "The data couldn\u2019t be read because it is missing.";

private:
    QJsonValue required(const char *key) {
        const QJsonValue value = object_.value(QLatin1String(key));
        if (value.isUndefined() || value.isNull())
            fail(missing);
        return value;
    }

    void fail(const char *sentence) {
        if (!failure_)
            failure_ = UpdateFailure(sentence);
    }

    QJsonObject object_;
    std::optional<UpdateFailure> failure_;
};

std::optional<std::int64_t> parseInteger(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-'))
            return std::nullopt;
    }
    std::int64_t number = 0;
    const char *const end = text.data() + text.size();
    const auto [parsed, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && parsed == end ? std::optional(number) : std::nullopt;
}

std::vector<std::int64_t> numbersIn(std::string_view dotted) {
    std::vector<std::int64_t> numbers;
    while (!dotted.empty()) {
        const std::size_t end = std::min(dotted.find('.'), dotted.size());
        if (const auto number = parseInteger(dotted.substr(0, end)))
            numbers.push_back(*number);
        dotted.remove_prefix(std::min(end + 1, dotted.size()));
    }
    return numbers;
}

} // namespace

UpdateResult<UpdateManifest> UpdateManifest::decode(const QByteArray &json) {
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return UpdateFailure(Decoder::wrongFormat);
    Decoder decoder(document.object());
    UpdateManifest manifest;
    manifest.version = decoder.text("version");
    manifest.build = decoder.wholeNumber("build");
    manifest.url = decoder.url("url");
    manifest.sha256 = decoder.optionalText("sha256");
    manifest.notes = decoder.optionalText("notes");
    manifest.minimumSystemVersion = decoder.optionalText("minimumSystemVersion");
    if (decoder.failure())
        return *decoder.failure();
    return manifest;
}

std::int64_t buildNumber(const std::optional<std::string> &text) {
    return text ? parseInteger(*text).value_or(0) : 0;
}

bool systemMeets(std::string_view minimum, const SystemVersion &system) {
    const std::vector<std::int64_t> required = numbersIn(minimum);
    if (required.empty())
        return true;
    if (required[0] != system.major)
        return required[0] < system.major;
    return system.minor >= (required.size() > 1 ? required[1] : 0);
}

} // namespace brimvale
