#include "Views/Browse/Compare/CompareNote.h"

#include "Base/Date.h"
#include "Views/Browse/Compare/ScanComparison.h"
#include "Views/Components/NoteLabel.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/Text.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QStringList>
#include <array>
#include <cstddef>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

/// "3 new, 1 gone, 2 moved, 14 changed", without those of which there are none.
QString countsOf(const std::vector<TreeChange> &changes) {
    constexpr std::array kinds = {TreeChange::Kind::appeared, TreeChange::Kind::gone, TreeChange::Kind::moved,
                                  TreeChange::Kind::changed};
    QStringList parts;
    for (const TreeChange::Kind kind : kinds) {
        std::int64_t count = 0;
        for (const TreeChange &change : changes)
            count += change.kind == kind ? 1 : 0;
        if (count > 0)
            parts << text(Fmt::count(count).append(" ").append(wordFor(kind)));
    }
    return parts.isEmpty() ? u"nothing has changed"_s : parts.join(u", "_s);
}

std::int64_t growthOf(const std::vector<TreeChange> &changes) {
    std::int64_t growth = 0;
    for (const TreeChange &change : changes)
        growth += change.growth();
    return growth;
}

} // namespace

CompareNote::CompareNote(QWidget *parent)
    : QWidget(parent), note_(new NoteLabel(QStringLiteral("history"), IconLabel::Tone::quiet, this)) {
    setObjectName(QStringLiteral("compareNote"));
    note_->setObjectName(QStringLiteral("compareWords"));
    QPushButton *stop = makeButton("stopComparing", u"Stop Comparing"_s, this);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(note_, 1, Qt::AlignVCenter);
    layout->addWidget(stop);
    connect(stop, &QPushButton::clicked, this, &CompareNote::stopAsked);
    hide();
}

void CompareNote::showComparison(const ScanComparison &comparison) {
    const bool hasChanges = comparison.changes() != nullptr;
    setVisible(hasChanges || comparison.isRunning());
    if (isHidden())
        return;
    const ScanComparison::Earlier &earlier = comparison.earlier();
    if (!hasChanges)
        return note_->setText(u"Comparing with “%1”…"_s.arg(earlier.file));
    const QString when =
        earlier.origin.date ? u", %1"_s.arg(text(Fmt::recentDate(earlier.origin.date))) : QString();
    const std::vector<TreeChange> &changes = comparison.changes()->changes();
    const QString words = u"Compared with “%1”%2: %3, %4."_s.arg(
        earlier.file, when, text(signedSize(growthOf(changes))), countsOf(changes));
    note_->setText(comparison.isRunning() ? words + u" Comparing again…"_s : words);
}

} // namespace brimvale
