#pragma once

#include "Core/Export/Listing.h"
#include "Core/Export/ListingReader.h"

#include <QObject>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class QAction;
class QMenu;
class QMainWindow;

namespace brimvale {

class BrowseView;
class FSNode;
class ScanSession;
class TextSink;
class TreeText;

/// The entries of the File menu that write the tree into a file, or show one from a file.
class TreeFiles : public QObject {
    Q_OBJECT

public:
    /// Both must outlive it.
    TreeFiles(ScanSession &scan, QMainWindow &window);

    /// Adds them. `browse` answers the page with the map, or null before it is first shown.
    void addActions(QMenu &file, std::function<BrowseView *()> browse);

signals:
    /// A tree from a file is shown now, or compared with; the page that shows it should be shown.
    void imported();

private:
    enum class Picture { png, svg };

    void exportPicture(Picture picture);
    void exportList(ListingFormat format);
    void saveScan();
    [[nodiscard]] ScanOrigin origin() const;
    void savePicture(const QString &suffix, std::function<std::string()> content);
    void saveTree(const QString &title, const QString &suffix, const QString &remark,
                  std::function<void(TextSink &, const FSNode &, const ScanOrigin &)> write);
    void chooseFile(const QString &title, const QString &suffix,
                    std::function<void(const std::string &)> use);
    void writeInBackground(const std::string &path, std::function<const std::string &()> content,
                           const QString &remark);
    void finishTexts();
    void askForList();
    void import(const std::string &path);
    void askForEarlierScan();
    void compareWith(const std::string &path);
    void showComparing();
    void read(const std::string &path, const QString &failure, std::function<void(ImportedTree)> use);

    ScanSession &scan_;
    QMainWindow &window_;
    std::function<BrowseView *()> browse_;
    std::vector<std::weak_ptr<TreeText>> texts_; ///< of the tree, maybe still to be written
    QAction *comparing_ = nullptr;
    QAction *stopping_ = nullptr; ///< ends a comparison
};

} // namespace brimvale
