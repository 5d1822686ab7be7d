#include "Views/Category/HiddenSpaceNotes.h"

#include "Views/Components/Metrics.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"

#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

HiddenSpaceNotes::HiddenSpaceNotes(QWidget *parent)
    : QWidget(parent), text_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      measure_(new QPushButton(u"Measure as Administrator…"_s, this)) {
    text_->setObjectName(QStringLiteral("hiddenSpace"));
    text_->setWordWrap(true);
    measure_->setObjectName(QStringLiteral("measureAsAdministrator"));
    measure_->setToolTip(u"Asks for an administrator’s password once, and only reads sizes."_s);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);
    layout->addWidget(text_);
    layout->addWidget(measure_, 0, Qt::AlignLeft);
    connect(measure_, &QPushButton::clicked, this, &HiddenSpaceNotes::measuringAsked);
}

void HiddenSpaceNotes::show(const std::vector<std::string> &sentences, bool hasIncompletePlaces,
                            bool isBusy) {
    QString words;
    for (const std::string &sentence : sentences)
        words += (words.isEmpty() ? QString() : u"\n"_s) + text(sentence);
    text_->setText(words);
    setHidden(sentences.empty());
    measure_->setHidden(!hasIncompletePlaces);
    measure_->setEnabled(!isBusy);
}

} // namespace brimvale
