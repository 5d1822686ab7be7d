#pragma once

#include <QWidget>
#include <string>
#include <vector>

class QScrollArea;
class QVBoxLayout;

namespace brimvale {

class CapacityCard;
class CategoryRow;
class MeasureButton;
class PageHeader;
class SnapshotsCard;
class Storage;
class TextLabel;
class Volumes;
class VolumesCard;
struct LocalSnapshot;

/// The page that divides the used space into categories, and shows the volumes and snapshots.
class OverviewView : public QWidget {
    Q_OBJECT

public:
    /// Both must outlive the page.
    OverviewView(Storage &storage, Volumes &volumes, QWidget *parent = nullptr);

signals:
    void categoryOpened(const std::string &id);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QWidget *makeHead();
    QWidget *makeContent();
    void showCategories();
    void showVolumes();
    void showSnapshots();
    void confirmDeletion(const LocalSnapshot &snapshot);

    Storage &storage_;
    Volumes &volumes_;
    PageHeader *header_ = nullptr;
    MeasureButton *measure_;
    CapacityCard *capacity_;
    QScrollArea *area_ = nullptr;
    QVBoxLayout *rowLayout_ = nullptr;
    std::vector<CategoryRow *> rows_;
    SnapshotsCard *snapshots_;
    TextLabel *otherVolumesTitle_;
    VolumesCard *otherVolumes_;
};

} // namespace brimvale
