#include "app/TarveloModel.h"
#include "support/TestDataFolder.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QIcon>
#include <QPixmap>
#include <QTabWidget>
#include <QtTest>

class StartupTest : public QObject
{
    Q_OBJECT
private slots:
    void splashLeavesRoomForTheVersion();
    void styleSheetHasEveryRule();
    void fontsRegister();
    void everyNamedPictureIsCompiledIn_data();
    void everyNamedPictureIsCompiledIn();
    void mainWindowOwnsTheModel();

private:
    TestDataFolder m_data;
};

void StartupTest::splashLeavesRoomForTheVersion()
{
    const QPixmap splash(QStringLiteral(":/resources/tarvelo-splash.png"));
    QVERIFY(!splash.isNull());
    QVERIFY(splash.width() > 300 && splash.height() > 200);
    QVERIFY(!QPixmap(QStringLiteral(":/resources/tarvelo.png")).isNull());
}

void StartupTest::styleSheetHasEveryRule()
{
    QFile file(QStringLiteral(":/resources/Tarvelo.css"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString css = QString::fromUtf8(file.readAll());
    for (const char *selector : {"*",
                                 "#borderless",
                                 "#positive",
                                 "#positive:disabled",
                                 "#negative",
                                 "QPushButton:disabled",
                                 "QMenu",
                                 "QMenu::item",
                                 "QMenu::item:selected",
                                 "QTextEdit",
                                 "QLineEdit",
                                 "QPlainTextEdit",
                                 "QComboBox",
                                 "QSpinBox",
                                 "QDoubleSpinBox",
                                 "QTabBar::tab",
                                 "QCheckBox",
                                 "QCheckBox::indicator",
                                 "#labelInvalid",
                                 "#propertyHeaderLabel",
                                 "#editable",
                                 "QMainWindow",
                                 "QWindow",
                                 "QScrollBar"})
        QVERIFY2(css.contains(QString::fromLatin1(selector)), selector);
    for (const char *value : {"'Roboto Condensed'", "#3C0", "#1A0", "#c5d9b4", "#99cc99", "#C30",
                              "rgb(0, 85, 127)", "#159", "#0CF", "#ffcccc", "#485c70", "#E0E0E0",
                              "#AAA", "chevron-up.svg", "chevron-down.svg", "check.svg"})
        QVERIFY2(css.contains(QString::fromLatin1(value), Qt::CaseInsensitive), value);
    // A style sheet Qt can't parse would be dropped silently at start.
    qApp->setStyleSheet(css);
    QCOMPARE(qApp->styleSheet(), css);
}

void StartupTest::fontsRegister()
{
    for (const char *font : {":/resources/Fonts/RobotoCondensed-Regular.ttf",
                             ":/resources/Fonts/RobotoCondensed-Bold.ttf"}) {
        const int id = QFontDatabase::addApplicationFont(QString::fromLatin1(font));
        QVERIFY2(id >= 0, font);
        QVERIFY(QFontDatabase::applicationFontFamilies(id).contains(
            QStringLiteral("Roboto Condensed")));
    }
}

void StartupTest::everyNamedPictureIsCompiledIn_data()
{
    QTest::addColumn<QString>("path");
    const QStringList icons {
        "script",       "experiment", "group",       "device",        "settings",   "connected",
        "disconnected", "play",       "stop-circle", "delete",        "edit",       "add",
        "done",         "close",      "alarm-light", "folder_search", "folder",     "account",
        "add-account",  "male",       "female",      "incognito",     "chevron-up", "chevron-down",
        "check",        "time-stim",  "time-delay",  "session",       "refresh"};
    for (const QString &icon : icons)
        QTest::newRow(qPrintable(icon)) << QStringLiteral(":/resources/Images/%1.svg").arg(icon);
    const QStringList stims {"green1",      "white1",      "blue1",        "red1",
                             "yellow1",     "blue2",       "red2",         "yellow2",
                             "white2",      "green2",      "whiteL",       "whiteR",
                             "audioLeftLo", "audioLeftHi", "audioRightLo", "audioRightHi",
                             "audioBothLo", "audioBothHi", "pedal-left",   "pedal-right"};
    for (const QString &stim : stims)
        QTest::newRow(qPrintable(stim))
            << QStringLiteral(":/resources/Images/stims/%1.png").arg(stim);
    QTest::newRow("icons/folder") << QStringLiteral(":/icons/folder.svg");
    QTest::newRow("icons/delete") << QStringLiteral(":/icons/delete.svg");
}

void StartupTest::everyNamedPictureIsCompiledIn()
{
    QFETCH(QString, path);
    QVERIFY(QFile::exists(path));
    QVERIFY(!QIcon(path).pixmap(QSize(24, 24)).isNull());
}

void StartupTest::mainWindowOwnsTheModel()
{
    MainWindow window;
    QVERIFY(window.model());
    QCOMPARE(window.model()->parent(), &window);
    QCOMPARE(TarveloModel::instance(), window.model());
    QVERIFY(window.windowTitle().startsWith(QStringLiteral("Тарвело ")));
    QVERIFY(window.findChild<QTabWidget *>());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
}

QTEST_MAIN(StartupTest)
#include "tst_startup.moc"
