#include "Views/Window/ResultSheet.h"

#include "Core/Removal/RemovalReport.h"
#include "Core/Text/Formatting.h"
#include "Views/Components/Card.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"

#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int sheetWidth = 480;
constexpr std::size_t mostItemsShown = 8;

} // namespace

ResultSheet::ResultSheet(const RemovalResult &result, QWidget *parent)
    : Sheet("resultSheet", text(std::string(RemovalReport::title(result))), parent) {
    auto *summary = new TextLabel(Type::Size::body, TextLabel::Tone::primary, this);
    summary->setObjectName(QStringLiteral("resultSummary"));
    summary->setText(text(RemovalReport::summary(result)));
    summary->setWordWrap(true);

    QVBoxLayout *layout = makeLayout();
    layout->addWidget(makeHeading("resultTitle", windowTitle()));
    layout->addWidget(summary);
    if (!result.failed.empty())
        addFailures(*layout, result);
    if (!result.needsAdmin.empty())
        addAdminSection(*layout, result.needsAdmin);
    layout->addSpacing(4);
    addChoice(*layout, result.needsAdmin);
    setFixedWidth(sheetWidth);
    resize(sheetWidth, layout->totalHeightForWidth(sheetWidth));
}

void ResultSheet::setCanEscalate(bool can) {
    if (authenticate_ != nullptr)
        authenticate_->setEnabled(can);
}

void ResultSheet::addFailures(QVBoxLayout &layout, const RemovalResult &result) {
    auto *card = new Card(this);
    auto *lines = new QVBoxLayout(card);
    lines->setContentsMargins(12, 10, 12, 10);
    lines->setSpacing(6);
    for (const std::string &failure : RemovalReport::failureLines(result)) {
        auto *line = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, card);
        line->setObjectName(QStringLiteral("failure"));
        line->setText(text(failure));
        line->setWordWrap(true);
        line->setTextInteractionFlags(Qt::TextSelectableByMouse);
        lines->addWidget(line);
    }
    layout.addWidget(card);
}

void ResultSheet::addAdminSection(QVBoxLayout &layout, const std::vector<FileURL> &items) {
    auto *heading = new TextLabel(Type::Size::body, QFont::DemiBold, this);
    heading->setObjectName(QStringLiteral("adminTitle"));
    heading->setText(u"Some items need admin rights"_s);
    auto *card = new Card(this);
    auto *lines = new QVBoxLayout(card);
    lines->setContentsMargins(12, 10, 12, 10);
    lines->setSpacing(6);
    const std::size_t shown = std::min(items.size(), mostItemsShown);
    for (std::size_t i = 0; i < shown; ++i) {
        auto *line = new ElidedLabel(Type::Size::body, TextLabel::Tone::secondary, Qt::ElideMiddle, card);
        line->setObjectName(QStringLiteral("adminItem"));
        line->setText(displayedText(items[i].path()));
        lines->addWidget(line);
    }
    if (const std::size_t rest = items.size() - shown; rest > 0) {
        auto *line = new TextLabel(Type::Size::body, TextLabel::Tone::tertiary, card);
        line->setText(u"and %1 more."_s.arg(text(Fmt::count(static_cast<std::int64_t>(rest)))));
        lines->addWidget(line);
    }
    auto *note = new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this);
    note->setText(u"There is no Trash for what an administrator removes: it is deleted immediately."_s);
    note->setWordWrap(true);
    layout.addWidget(heading);
    layout.addWidget(card);
    layout.addWidget(note);
}

void ResultSheet::addChoice(QVBoxLayout &layout, const std::vector<FileURL> &needsAdmin) {
    if (needsAdmin.empty())
        return addButtons(layout, {makeCloseButton("ok", u"OK"_s)});
    authenticate_ = makeButton("authenticate", u"Authenticate and remove"_s, this);
    connect(authenticate_, &QPushButton::clicked, this, [this, needsAdmin] {
        emit escalated(needsAdmin);
        accept();
    });
    addButtons(layout, {authenticate_, makeCloseButton("skip", u"Skip"_s)});
}

} // namespace brimvale
