# Most of the compile time is parsing headers, so common headers are parsed once for each kind of target.
# `brimvale_precompiled(NAME LINKS LIBRARY… HEADERS HEADER…)` makes a precompiled header, and targets compiled with
# the same flags reuse it. Every file still includes what it uses: lint builds without precompiled headers.
function(brimvale_precompiled name)
    cmake_parse_arguments(PRECOMPILED "" "" "LINKS;HEADERS" ${ARGN})
    file(CONFIGURE OUTPUT Empty.cpp CONTENT "")
    add_library(${name} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/Empty.cpp)
    target_link_libraries(${name} PRIVATE ${PRECOMPILED_LINKS})
    target_precompile_headers(${name} PRIVATE ${PRECOMPILED_HEADERS})
endfunction()

set(plain_headers <algorithm> <array> <atomic> <cerrno> <chrono> <cstddef> <cstdint> <filesystem> <functional> <memory>
    <mutex> <optional> <span> <string> <string_view> <system_error> <thread> <unordered_map> <unordered_set> <utility>
    <variant> <vector>)
set(qt_headers ${plain_headers} <QByteArray> <QMetaObject> <QObject> <QString>)
set(window_headers ${qt_headers} <QAbstractItemModel> <QAccessible> <QApplication> <QBoxLayout> <QDialog> <QEvent>
    <QKeyEvent> <QLabel> <QMenu> <QPainter> <QPainterPath> <QPushButton> <QScrollArea> <QStyledItemDelegate> <QTreeView>
    <QUrl> <QWidget>)
brimvale_precompiled(BrimvalePrecompiled HEADERS ${plain_headers})
brimvale_precompiled(BrimvaleQtPrecompiled LINKS Qt6::Core HEADERS ${qt_headers})
brimvale_precompiled(BrimvaleWindowPrecompiled LINKS Qt6::Widgets HEADERS ${window_headers})
