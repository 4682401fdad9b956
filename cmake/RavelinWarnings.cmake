# Compiler warnings and sanitizers shared by every target of the project.
function(ravelin_set_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
    if(RAVELIN_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()

if(RAVELIN_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=address,undefined)
endif()

# ThreadSanitizer (build-tsan, scripts/tsan): the library's own code and the
# tests instrumented; Qt is not, so what Qt orders internally is announced by the
# library where it hands work between threads (api/apiqueue.cpp), and reports
# inside Qt alone are suppressed (scripts/tsan.supp).
option(RAVELIN_TSAN "Build everything with ThreadSanitizer" OFF)
if(RAVELIN_TSAN)
    if(RAVELIN_SANITIZE)
        message(FATAL_ERROR "RAVELIN_TSAN and RAVELIN_SANITIZE cannot be combined")
    endif()
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
endif()

# Precompiled Qt headers for a target (RAVELIN_PRECOMPILED_HEADERS): the headers
# most sources include, not whole modules (a module-sized header costs more to
# load in every translation unit than it saves).
set(RAVELIN_CORE_PCH <QByteArray> <QColor> <QCoreApplication> <QDateTime> <QHash> <QImage> <QJsonArray>
    <QJsonDocument> <QJsonObject> <QList> <QMap> <QObject> <QPointer> <QString> <QStringList> <QTimer> <QVariant>)
set(RAVELIN_UI_PCH <QHBoxLayout> <QKeyEvent> <QLabel> <QMouseEvent> <QPainter> <QPainterPath> <QPushButton>
    <QResizeEvent> <QScrollArea> <QScrollBar> <QStyledItemDelegate> <QToolButton> <QVBoxLayout> <QWidget>)
set(RAVELIN_TEST_PCH <QTest> <QSignalSpy> <QTemporaryDir> <QSettings> <QNetworkAccessManager> <QApplication>)
function(ravelin_precompile_headers target)
    if(RAVELIN_PRECOMPILED_HEADERS)
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()
