#include "Views/Browse/ImportNote.h"

#include "Base/FileURL.h"
#include "Core/Model/ScanSession.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"

#include <QStringList>
#include <cstddef>
#include <optional>
#include <string_view>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr std::size_t dayLength = std::string_view("2026-03-01").size();

} // namespace

ImportNote::ImportNote(const ScanSession &scan, QWidget *parent)
    : NoteLabel(QStringLiteral("info"), IconLabel::Tone::quiet, parent), scan_(scan) {
    setObjectName(QStringLiteral("importNote"));
    connect(&scan_, &ScanSession::changed, this, &ImportNote::showOrigin);
    showOrigin();
}

void ImportNote::showOrigin() {
    const std::optional<ImportedFrom> &from = scan_->importedFrom;
    if (!from)
        return setText({});
    if (from->isByAdministrator)
        return setText(u"Scanned as administrator. Nothing can be removed here; scan again for that."_s);
    QStringList parts;
    if (!from->origin.host.empty())
        parts << displayedText(from->origin.host);
    if (from->origin.date)
        parts << brimvale::text(iso8601(*from->origin.date).substr(0, dayLength));
    const QString origin = parts.isEmpty() ? QString() : u" (%1)"_s.arg(parts.join(u", "_s));
    setText(u"Imported from “%1”%2. Nothing here is on this disk, so nothing can be removed."_s.arg(
        displayedText(FileURL(from->file).fileName()), origin));
}

} // namespace brimvale
