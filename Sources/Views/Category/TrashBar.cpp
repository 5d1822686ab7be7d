#include "Views/Category/TrashBar.h"

#include "Views/Components/DestructiveButton.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/Shortcuts.h"
#include "Views/Components/TextLabel.h"
#include "Views/Removing/SelectionTexts.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

TrashBar::TrashBar(QWidget *parent)
    : Bar(parent), selection_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      note_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this)),
      putBack_(makeButton("putBack", u"Put Back"_s, this)), delete_(new DestructiveButton(this)),
      empty_(new DestructiveButton(this)) {
    setObjectName(QStringLiteral("trashBar"));
    selection_->setObjectName(QStringLiteral("selection"));
    note_->setObjectName(QStringLiteral("note"));
    note_->setWordWrap(true);
    note_->hide();
    delete_->setObjectName(QStringLiteral("deleteNow"));
    delete_->setText(u"Delete Immediately…"_s);
    empty_->setObjectName(QStringLiteral("emptyTrash"));
    empty_->setText(u"Empty Trash…"_s);
    connect(putBack_, &QPushButton::clicked, this, &TrashBar::putBackAsked);
    connect(delete_, &QPushButton::clicked, this, &TrashBar::deletionAsked);
    connect(empty_, &QPushButton::clicked, this, &TrashBar::emptyingAsked);
    Shortcuts::askForRemovalWith(*delete_);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(Metrics::pageMargin, 12, Metrics::pageMargin, 12);
    layout->setSpacing(12);
    auto *words = new QVBoxLayout;
    words->setSpacing(2);
    words->addWidget(selection_);
    words->addWidget(note_);
    layout->addLayout(words, 1);
    layout->addWidget(putBack_);
    layout->addWidget(delete_);
    layout->addWidget(empty_);
    showState();
}

void TrashBar::setSelection(std::int64_t count, std::int64_t bytes) {
    count_ = count;
    bytes_ = bytes;
    showState();
}

void TrashBar::setNote(const QString &note) {
    note_->setText(note);
    note_->setHidden(note.isEmpty());
}

void TrashBar::setBusy(const QString &work) {
    work_ = work;
    showState();
}

void TrashBar::setFilled(bool isFilled) {
    isFilled_ = isFilled;
    showState();
}

void TrashBar::showState() {
    const bool isIdle = work_.isEmpty();
    selection_->setText(isIdle ? selectionText(count_, bytes_) : work_);
    putBack_->setEnabled(isIdle && count_ > 0);
    delete_->setEnabled(isIdle && count_ > 0);
    empty_->setEnabled(isIdle && isFilled_);
}

} // namespace brimvale
