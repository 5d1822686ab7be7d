#pragma once

#include "Core/Storage/LocalSnapshot.h"
#include "Views/Components/Card.h"

#include <vector>

class QVBoxLayout;

namespace brimvale {

class TextLabel;

/// The local snapshots of the root volume, newest first, with a button to delete those that can be deleted.
class SnapshotsCard : public Card {
    Q_OBJECT

public:
    explicit SnapshotsCard(QWidget *parent = nullptr);

    /// Hidden if there are none. While one is being deleted (`isBusy`), the buttons are disabled.
    void setSnapshots(const std::vector<LocalSnapshot> &snapshots, bool isBusy);

signals:
    void deletionAsked(const LocalSnapshot &snapshot);

private:
    QWidget *makeRow(const LocalSnapshot &snapshot, bool isBusy);
    QWidget *makeButton(const LocalSnapshot &snapshot, bool isBusy, QWidget *row);

    TextLabel *note_;
    QVBoxLayout *rows_;
    std::vector<LocalSnapshot> shown_;
    bool isBusy_ = false;
};

} // namespace brimvale
