#include "Views/Window/RemovalBar.h"

#include "Core/Model/Removals.h"
#include "Core/Text/Formatting.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/ProgressLine.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <chrono>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr std::chrono::milliseconds delayBeforeShown{400};
constexpr int lineWidth = 160;

QString removingText(const RemovalState &state) {
    if (state.removedEntries > 0)
        return u"Removing… %1 files and folders so far"_s.arg(
            QString::fromStdString(Fmt::count(state.removedEntries)));
    if (state.bytesVerified < state.bytesToVerify)
        return u"Comparing the backup with its manifest, %1 of %2"_s.arg(sizeText(state.bytesVerified),
                                                                         sizeText(state.bytesToVerify));
    return u"Removing…"_s;
}

} // namespace

RemovalBar::RemovalBar(Removals &removals, QWidget *parent)
    : Bar(parent), removals_(removals),
      what_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)), line_(new ProgressLine(this)),
      stop_(makeButton("stopRemoval", u"Stop"_s, this)) {
    setObjectName(QStringLiteral("removalBar"));
    what_->setObjectName(QStringLiteral("removalActivity"));
    line_->setRange(0, 0);
    line_->setFixedWidth(lineWidth);
    line_->setAccessibleName(u"Removal"_s);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(Metrics::pageMargin, 8, Metrics::pageMargin, 8);
    layout->setSpacing(16);
    layout->addWidget(what_);
    layout->addWidget(line_);
    layout->addStretch(1);
    layout->addWidget(stop_);
    hide();

    delay_.setSingleShot(true);
    delay_.setInterval(delayBeforeShown);
    connect(&delay_, &QTimer::timeout, this, &QWidget::show);
    connect(stop_, &QPushButton::clicked, &removals, &Removals::stopRemoval);
    connect(&removals_, &Removals::changed, this, &RemovalBar::showActivity);
    showActivity();
}

void RemovalBar::showActivity() {
    stop_->setVisible(removals_->removalActivity == RemovalActivity::removing);
    switch (removals_->removalActivity) {
    case RemovalActivity::none:
        delay_.stop();
        hide();
        return;
    case RemovalActivity::removing:
        what_->setText(removingText(*removals_));
        break;
    case RemovalActivity::stopping:
        what_->setText(u"Stopping…"_s);
        break;
    case RemovalActivity::asAdministrator:
        what_->setText(u"Removing as an administrator. The system may ask for a password."_s);
        break;
    }
    if (!isVisible() && !delay_.isActive())
        delay_.start();
}

} // namespace brimvale
