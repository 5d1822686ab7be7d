#include "Views/Components/CategoryStyle.h"

#include "Core/Storage/StorageCategories.h"

#include <QFile>
#include <gtest/gtest.h>

namespace brimvale {

TEST(CategoryStyle, KnowsTheSymbolOfEveryCategory) {
    for (const System system : {System::macOS, System::linux})
        for (const StorageCategory &category :
             StorageCategories::all({system, FileURL("/home/u"), platformTools()})) {
            EXPECT_TRUE(iconForSymbol(category.symbol)) << category.symbol;
            const QString icon = categoryIcon(category);
            EXPECT_TRUE(QFile::exists(QStringLiteral(":/icons/%1.svg").arg(icon))) << icon.toStdString();
        }
}

} // namespace brimvale
