#pragma once

#include <QWidget>
#include <string>
#include <vector>

class QPushButton;

namespace brimvale {

class TextLabel;

/// Sentences about the part of System Data that no row shows, and the button that measures as administrator.
class HiddenSpaceNotes : public QWidget {
    Q_OBJECT

public:
    explicit HiddenSpaceNotes(QWidget *parent = nullptr);

    /// Hidden without sentences. The button is there if some places are incomplete, and waits while anything
    /// is being measured.
    void show(const std::vector<std::string> &sentences, bool hasIncompletePlaces, bool isBusy);

signals:
    void measuringAsked();

private:
    TextLabel *text_;
    QPushButton *measure_;
};

} // namespace brimvale
