#include "Views/Cleanup/CommandList.h"

#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/TextLabel.h"

#include <QClipboard>
#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

CommandList::CommandList(QWidget *parent) : QWidget(parent), rows_(new QVBoxLayout(this)) {
    setObjectName(QStringLiteral("commands"));
    rows_->setContentsMargins(16, 2, 16, 8);
    rows_->setSpacing(2);
    auto *title = new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this);
    title->setText(u"You can also clean these up with commands in a terminal:"_s);
    title->setWordWrap(true);
    rows_->addWidget(title);
    hide();
}

void CommandList::setCommands(const QStringList &commands) {
    setHidden(commands.isEmpty());
    if (commands == commands_)
        return;
    commands_ = commands;
    delete content_;
    content_ = new QWidget(this);
    auto *inside = new QVBoxLayout(content_);
    inside->setContentsMargins(0, 0, 0, 0);
    inside->setSpacing(0);
    rows_->addWidget(content_);
    for (const QString &command : commands)
        addRow(command);
    drawIcons();
}

void CommandList::addRow(const QString &command) {
    auto *row = new QHBoxLayout;
    row->setSpacing(6);
    auto *copy = makeButton("copyCommand", {}, content_);
    copy->setFlat(true);
    copy->setToolTip(u"Copy Command"_s);
    copy->setAccessibleName(u"Copy the command %1"_s.arg(command));
    connect(copy, &QPushButton::clicked, this, [command] { QGuiApplication::clipboard()->setText(command); });
    auto *words = new TextLabel(Type::Size::caption, TextLabel::Tone::primary, content_);
    words->setObjectName(QStringLiteral("command"));
    words->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    words->setText(command);
    row->addWidget(words);
    row->addWidget(copy);
    row->addStretch(1);
    static_cast<QVBoxLayout *>(content_->layout())->addLayout(row);
}

void CommandList::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        drawIcons();
}

void CommandList::drawIcons() {
    for (QPushButton *copy : findChildren<QPushButton *>())
        copy->setIcon(Icons::icon(QStringLiteral("copy"), Theme::current().secondaryText, Metrics::iconSize));
}

} // namespace brimvale
