#include "Views/Window/ResultAlert.h"

#include "Core/Removal/RemovalReport.h"
#include "Core/Text/Formatting.h"
#include "Views/Components/Card.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int margin = 24;
constexpr int alertWidth = 480;
constexpr std::size_t mostItemsShown = 8;

} // namespace

ResultAlert::ResultAlert(const RemovalResult &result, QWidget *parent) : QDialog(parent, Qt::Sheet) {
    setObjectName(QStringLiteral("resultAlert"));
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_WindowPropagation); // so that it has the window's palette
    setWindowModality(Qt::WindowModal);

    const QString titleText = text(std::string(RemovalReport::title(result)));
    setWindowTitle(titleText);
    auto *title = new TextLabel(Type::Size::heading, QFont::DemiBold, this);
    title->setObjectName(QStringLiteral("resultTitle"));
    title->setText(titleText);
    auto *summary = new TextLabel(Type::Size::body, TextLabel::Tone::primary, this);
    summary->setObjectName(QStringLiteral("resultSummary"));
    summary->setText(text(RemovalReport::summary(result)));
    summary->setWordWrap(true);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, 16);
    layout->setSpacing(12);
    layout->addWidget(title);
    layout->addWidget(summary);
    if (!result.failed.empty())
        addFailures(*layout, result);
    if (!result.needsAdmin.empty())
        addAdminSection(*layout, result.needsAdmin);
    layout->addSpacing(4);
    layout->addWidget(makeButtons(result.needsAdmin));
    setFixedWidth(alertWidth);
    resize(alertWidth, layout->totalHeightForWidth(alertWidth));
}

void ResultAlert::setCanEscalate(bool can) {
    if (authenticate_ != nullptr)
        authenticate_->setEnabled(can);
}

void ResultAlert::addFailures(QVBoxLayout &layout, const RemovalResult &result) {
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

void ResultAlert::addAdminSection(QVBoxLayout &layout, const std::vector<FileURL> &items) {
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

QWidget *ResultAlert::makeButtons(const std::vector<FileURL> &needsAdmin) {
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addStretch(1);
    if (!needsAdmin.empty()) {
        authenticate_ = new QPushButton(u"Authenticate and remove"_s, row);
        authenticate_->setObjectName(QStringLiteral("authenticate"));
        authenticate_->setAutoDefault(false);
        connect(authenticate_, &QPushButton::clicked, this, [this, needsAdmin] {
            emit escalated(needsAdmin);
            accept();
        });
        layout->addWidget(authenticate_);
    }
    auto *close = new QPushButton(needsAdmin.empty() ? u"OK"_s : u"Skip"_s, row);
    close->setObjectName(needsAdmin.empty() ? QStringLiteral("ok") : QStringLiteral("skip"));
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    layout->addWidget(close);
    close->setFocus();
    return row;
}

} // namespace brimvale
