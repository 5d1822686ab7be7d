#include "Views/Components/ActionBar.h"

#include "Core/Formatting.h"
#include "Views/Components/DestructiveButton.h"
#include "Views/Components/RemovalModePicker.h"
#include "Views/Components/Shortcuts.h"
#include "Views/Components/TextLabel.h"
#include "Views/Components/Theme.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QShortcut>
#include <QVBoxLayout>

namespace brimvale {

namespace {

QString text(const std::string &utf8) {
    return QString::fromStdString(utf8);
}

} // namespace

ActionBar::ActionBar(QWidget *parent)
    : QWidget(parent), selection_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      note_(new TextLabel(Type::Size::caption, TextLabel::Tone::warning, this)),
      picker_(new RemovalModePicker(this)), remove_(new DestructiveButton(this)) {
    setObjectName(QStringLiteral("actionBar"));
    selection_->setObjectName(QStringLiteral("selection"));
    note_->setObjectName(QStringLiteral("note"));
    note_->setWordWrap(true);
    note_->hide();
    remove_->setObjectName(QStringLiteral("remove"));
    connect(remove_, &QPushButton::clicked, this, [this] { emit removalAsked(picker_->mode()); });

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(24, 12, 24, 12);
    layout->setSpacing(12);
    auto *words = new QVBoxLayout;
    words->setSpacing(2);
    words->addWidget(selection_);
    words->addWidget(note_);
    layout->addLayout(words, 1);
    layout->addWidget(picker_);
    layout->addWidget(remove_);
    showSelection();
}

void ActionBar::setSelection(std::int64_t count, std::int64_t bytes) {
    count_ = count;
    bytes_ = bytes;
    showSelection();
}

void ActionBar::setNote(const QString &note) {
    note_->setText(note);
    note_->setHidden(note.isEmpty());
}

void ActionBar::setBusy(bool isBusy) {
    isBusy_ = isBusy;
    showSelection();
}

void ActionBar::listenForKeys() {
    for (const QKeySequence &key : Shortcuts::removal())
        connect(new QShortcut(key, this), &QShortcut::activated, remove_, &QPushButton::click);
}

void ActionBar::resetMode() {
    picker_->setMode(RemovalMode::trash);
}

void ActionBar::showSelection() {
    const QString count = text(Fmt::count(count_));
    const QString bytes = text(Fmt::byteFormatter(bytes_));
    if (isBusy_)
        selection_->setText(tr("Removing…"));
    else if (count_ == 0)
        selection_->setText(tr("Nothing selected"));
    else
        selection_->setText(count_ == 1 ? tr("1 item selected, %1").arg(bytes)
                                        : tr("%1 items selected, %2").arg(count, bytes));
    remove_->setText(removalTitle(count_, bytes_));
    remove_->setEnabled(count_ > 0 && !isBusy_);
}

void ActionBar::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    const Theme &theme = Theme::current();
    painter.fillRect(rect(), theme.card);
    painter.fillRect(QRect(0, 0, width(), 1), theme.border);
}

} // namespace brimvale
