#include "Core/Model/Apps.h"
#include "Core/Model/Cleanup.h"
#include "Core/Model/OrphanSearch.h"
#include "Core/Model/Storage.h"
#include "Platform/Host.h"
#include "Support/EnvironmentVariable.h"
#include "Support/MacWords.h"
#include "Support/Model.h"
#include "Support/RecordingActions.h"
#include "Support/TemporaryFolder.h"
#include "Support/WholeWindow.h"
#include "Support/Window.h"
#include "Views/Window/AboutSheet.h"
#include "Views/Window/ShortcutsSheet.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QMetaProperty>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

/// Every text of an object: of labels, buttons and actions, tool tips, what a screen reader says.
QStringList textsOf(const QObject &object) {
    QStringList texts;
    const QMetaObject *type = object.metaObject();
    for (int i = 0; i < type->propertyCount(); ++i) {
        const QMetaProperty property = type->property(i);
        if (property.typeId() == QMetaType::QString && QLatin1String(property.name()) != "styleSheet" &&
            QLatin1String(property.name()) != "objectName")
            texts << property.read(&object).toString();
    }
    return texts;
}

void addTextsOf(const QAbstractItemModel &model, const QModelIndex &parent, QStringList &texts) {
    for (int row = 0; row < model.rowCount(parent); ++row)
        for (int column = 0; column < model.columnCount(parent); ++column) {
            const QModelIndex index = model.index(row, column, parent);
            for (const int role :
                 {Qt::DisplayRole, Qt::ToolTipRole, Qt::AccessibleTextRole, Qt::AccessibleDescriptionRole})
                texts << index.data(role).toString();
            if (column == 0)
                addTextsOf(model, index, texts);
        }
}

/// The texts in a window that hold one of those words.
std::string macTextsIn(const QWidget &window) {
    QStringList texts = textsOf(window);
    for (const QObject *child : window.findChildren<QObject *>()) {
        texts << textsOf(*child);
        if (const auto *view = qobject_cast<const QAbstractItemView *>(child); view && view->model())
            addTextsOf(*view->model(), {}, texts);
        if (const auto *box = qobject_cast<const QComboBox *>(child))
            addTextsOf(*box->model(), {}, texts);
    }
    return testing::macTexts(texts);
}

/// A Linux computer with something in each of the places that its pages know.
class LinuxWordsTest : public ::testing::Test {
protected:
    LinuxWordsTest() {
        Host::useSystem(System::linux);
        Host::useRoot(disk.path());
        for (const char *file :
             {"usr/bin/program", "opt/app/program", "var/log/old.log.1", "var/lib/snapd/snaps/app_1.snap",
              "var/lib/docker/image", "home/other/file", "home/anna/Documents/text", "home/anna/Music/song",
              "home/anna/Pictures/picture", "home/anna/Videos/film", "home/anna/.thunderbird/mail",
              "home/anna/.cargo/registry/cache/crate", "home/anna/.cache/pip/wheel",
              "home/anna/.wine/drive_c/x", "home/anna/.local/share/Trash/files/old",
              "home/anna/.local/share/Steam/steamapps/common/game",
              "home/anna/.var/app/org.gone.App/data/file", "home/anna/.ollama/models/blob"})
            disk.makeFile(file, 100'000);
        disk.writeFile("etc/os-release", "PRETTY_NAME=\"Sample Linux 1\"\n");
        model = std::make_unique<CorvelModel>(actions);
        window = std::make_unique<testing::WholeWindow>(*model);
        testing::activate(*window);
    }
    ~LinuxWordsTest() override {
        window.reset();
        model.reset();
        Host::useSystem(std::nullopt);
        Host::useRoot("/");
    }

    const testing::TemporaryFolder disk;
    const testing::EnvironmentVariable home{"HOME", disk.path("home/anna")};
    testing::RecordingActions actions;
    std::unique_ptr<CorvelModel> model;
    std::unique_ptr<testing::WholeWindow> window;
};

} // namespace

TEST_F(LinuxWordsTest, NoPageHasAWordOfAMac) {
    EXPECT_EQ(macTextsIn(*window), "") << "before anything is measured";
    model->storage.measureCategories();
    model->cleanup.measureCleanup();
    model->apps.loadApps();
    model->orphans.search();
    ASSERT_TRUE(testing::eventually([&] {
        return !model->storage->isMeasuringCategories && !model->cleanup->isMeasuringCleanup &&
               !model->apps->isLoadingApps && !model->orphans->isSearching;
    }));
    model->scan.startScan();
    ASSERT_TRUE(testing::waitUntilScanned(*model));
    ASSERT_GT(model->storage->categories.size(), 5U);
    for (const MeasuredCategory &category : model->storage->categories)
        window->goTo({Section::Kind::category, category.category.id});
    for (const Section::Kind kind :
         {Section::Kind::overview, Section::Kind::cleanup, Section::Kind::apps, Section::Kind::browse}) {
        window->goTo({kind});
        EXPECT_EQ(macTextsIn(*window), "") << int(kind);
    }
    EXPECT_EQ(macTextsIn(AboutSheet(window.get())), "");
    EXPECT_EQ(macTextsIn(ShortcutsSheet(window.get())), "");
}

} // namespace brimvale
