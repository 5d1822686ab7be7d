#include "Views/Window/NoticeBar.h"

#include "Views/Components/IconLabel.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/TextLabel.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QPushButton>
#include <chrono>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr std::chrono::seconds shownFor{12};

} // namespace

NoticeBar::NoticeBar(QWidget *parent)
    : Bar(parent), words_(new TextLabel(Type::Size::body, TextLabel::Tone::primary, this)) {
    setObjectName(QStringLiteral("noticeBar"));
    words_->setObjectName(QStringLiteral("windowNotice"));
    words_->setWordWrap(true);
    auto *close = makeButton("closeNotice", u"Close"_s, this);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(Metrics::pageMargin, 8, Metrics::pageMargin, 8);
    layout->setSpacing(12);
    layout->addWidget(new IconLabel(QStringLiteral("info"), IconLabel::Tone::accent, this));
    layout->addWidget(words_, 1);
    layout->addWidget(close);
    hide();

    end_.setSingleShot(true);
    end_.setInterval(shownFor);
    connect(&end_, &QTimer::timeout, this, &QWidget::hide);
    connect(close, &QPushButton::clicked, this, &QWidget::hide);
}

void NoticeBar::showNotice(const QString &sentence) {
    words_->setText(sentence);
    show();
    end_.start();
    QAccessibleEvent alert(words_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

} // namespace brimvale
