#include "Views/Removing/ConfirmationSheet.h"

#include "Views/Components/DestructiveButton.h"
#include "Views/Components/TextLabel.h"
#include "Views/Removing/SheetOrder.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int confirmationWidth = 420;

} // namespace

TextSheet::TextSheet(const char *objectName, const QString &title, const QString &text, QWidget *parent)
    : Sheet(objectName, title, parent), content_(makeLayout()) {
    auto *explanation = new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this);
    explanation->setObjectName(QStringLiteral("explanation"));
    explanation->setText(text);
    explanation->setWordWrap(true);
    content_->addWidget(makeHeading("question", title));
    content_->addWidget(explanation);
    content_->addSpacing(4);
    setFixedWidth(Type::scaled(confirmationWidth));
}

ConfirmationSheet::ConfirmationSheet(const QString &question, const QString &explanation,
                                     const QString &action, QWidget *parent)
    : TextSheet("confirmationSheet", question, explanation, parent) {
    auto *act = new DestructiveButton(this);
    act->setObjectName(QStringLiteral("confirm"));
    act->setText(action);
    connect(act, &QPushButton::clicked, this, &QDialog::accept);
    addButtons(content(), {act, makeCloseButton("cancel", u"Cancel"_s)});
}

NoticeSheet::NoticeSheet(const QString &title, const QString &text, QWidget *parent)
    : TextSheet("noticeSheet", title, text, parent) {
    addButtons(content(), {makeCloseButton("ok", u"OK"_s)});
    resize(width(), content().totalHeightForWidth(width())); // the text may be long
}

void showNoticeSheet(QWidget &window, const QString &title, const QString &text) {
    whenNoSheetIsOpen(&window, [&window, title, text] { (new NoticeSheet(title, text, &window))->open(); });
}

} // namespace brimvale
