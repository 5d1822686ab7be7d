#pragma once

#include "Views/Components/IconLabel.h"

namespace brimvale {

class TextLabel;

/// A small note: an icon, and a text of as many lines as needed.
class NoteLabel : public QWidget {
    Q_OBJECT

public:
    NoteLabel(const QString &iconName, IconLabel::Tone tone, QWidget *parent = nullptr);

    /// An empty text hides the note.
    void setText(const QString &text);
    [[nodiscard]] QString text() const;

private:
    TextLabel *text_;
};

} // namespace brimvale
