#include "app/TarveloModel.h"
#include "device/TarveloDevice.h"
#include "device/widgets/ComUpdaterWidget.h"
#include "device/widgets/PageDevice.h"
#include "device/widgets/TarveloSettingsWidget.h"
#include "device/widgets/TarveloStatusBar.h"
#include "foundation/widgets/MediaHelper.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"
#include "support/TestDataFolder.h"
#include "support/TestFiles.h"
#include "ui/MainWindow.h"

#include <QtTest>
#include <QtWidgets>

#include <algorithm>
#include <functional>
#include <memory>
#include <zip.h>

namespace {
const QString Warning = QStringLiteral("There were errors while uploading firmware");

// Runs act once ready holds, polled from whatever event loop runs, modal ones included.
void when(const std::function<bool()> &ready, const std::function<void()> &act)
{
    QTimer::singleShot(20, [=] { ready() ? act() : when(ready, act); });
}

template<typename T>
T *modal()
{
    return qobject_cast<T *>(QApplication::activeModalWidget());
}

// Closes the next message box and keeps its text, after whatever is to be done meanwhile.
void answerMessageBox(
    QString *text, const std::function<void()> &meanwhile = [] {})
{
    when([] { return modal<QMessageBox>(); },
         [text, meanwhile] {
             meanwhile();
             *text = modal<QMessageBox>()->text();
             modal<QMessageBox>()->done(0);
         });
}

template<typename T>
T *childWithText(QWidget *parent, const QString &text)
{
    const QList<T *> children = parent->findChildren<T *>();
    const auto it = std::find_if(children.cbegin(), children.cend(),
                                 [&text](const T *child) { return child->text() == text; });
    return it == children.cend() ? nullptr : *it;
}

QPushButton *at(PageDevice &page, int row, int column)
{
    auto *grid = static_cast<QGridLayout *>(page.layout());
    QWidget *widget = grid->itemAtPosition(row, column)->widget();
    // The bottom lamps stand in frames of their own.
    return widget->findChild<QPushButton *>() ? widget->findChild<QPushButton *>()
                                              : qobject_cast<QPushButton *>(widget);
}

// The twelve lamps in Stimulus order, "1" for lit.
QString litLamps(PageDevice &page)
{
    const QIcon lit = MediaHelper::icon(":/resources/Images/alarm-light.svg");
    QString lamps;
    for (int lamp = 0; lamp < 12; ++lamp) {
        const QPushButton *button =
            lamp < 10 ? at(page, lamp / 5, lamp % 5) : at(page, 2, 1 + 2 * (lamp - 10));
        lamps += button->icon().cacheKey() == lit.cacheKey() ? '1' : '0';
    }
    return lamps;
}
} // namespace

class DevicePageTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_data.isValid()); }
    void init();
    void clicksOnLampsAndTonesReachTheBox();
    void stateReportsLightLampsAndSinkControls();
    void optionsRoundTripWithTheBoxAndALostLinkEmptiesThePanel();
    void controlClickOpensTheSettingsOverTheShowingTabAndWritesTheSerial();
    void packagesGiveTheRightVerdict_data()
    {
        TestFiles::addRows(QStringLiteral("tables/firmware_packages.txt"));
    }
    void packagesGiveTheRightVerdict();
    void verdictShowsForEachRun_data()
    {
        TestFiles::addRows(QStringLiteral("tables/firmware_verdicts.txt"));
    }
    void verdictShowsForEachRun();
    void realAvrdudeThroughTheDialogsEndsInTheWarning();

private:
    bool startBox();
    bool link();
    QString package(const QStringList &names, const QMap<QString, QByteArray> &data = {});

    TestDataFolder m_data;
    // A blank in its path, as in many a documents folder.
    QTemporaryDir m_dir {QDir::tempPath() + "/device page-XXXXXX"};
    std::unique_ptr<EmulatorProcess> m_box;
    std::unique_ptr<TarveloModel> m_model;
};

void DevicePageTest::init()
{
    m_model.reset();
    m_box.reset();
    m_data.clear();
    setExtraPorts({});
    // Without a model the firmware dialog unpacks into the working folder.
    QVERIFY(QDir::setCurrent(m_dir.path()));
}

// The emulator, as the only port the search tries.
bool DevicePageTest::startBox()
{
    m_box = std::make_unique<EmulatorProcess>();
    setExtraPorts({m_box->start() ? m_box->path() : QString()});
    return !m_box->path().isEmpty();
}

// A model whose device is linked to the emulator.
bool DevicePageTest::link()
{
    if (!startBox())
        return false;
    m_model = std::make_unique<TarveloModel>();
    // The version is asked after the serial number: with its answer both are known.
    QSignalSpy answered(m_model->device(), &TarveloDevice::gotVersion);
    return answered.wait(WinMs);
}

// A package as a ZIP file made on Unix; "avrdude" entries are executable. Data defaults to a
// script that says it is done.
QString DevicePageTest::package(const QStringList &names, const QMap<QString, QByteArray> &data)
{
    const QString path = m_dir.filePath(QString::number(qHash(names)) + ".tvl");
    const zipFile zip = zipOpen64(QFile::encodeName(path).constData(), APPEND_STATUS_CREATE);
    bool written = zip;
    for (const QString &name : names) {
        zip_fileinfo info {};
        info.external_fa = uLong(name.startsWith("avrdude") ? 0100755 : 0100644) << 16;
        const QByteArray bytes = data.value(name, "#!/bin/sh\necho done\n");
        written = written
            && zipOpenNewFileInZip4(zip, name.toUtf8().constData(), &info, nullptr, 0, nullptr, 0,
                                    nullptr, Z_DEFLATED, Z_DEFAULT_COMPRESSION, 0, -MAX_WBITS, 8,
                                    Z_DEFAULT_STRATEGY, nullptr, 0, 3 << 8 | 20, 0x800)
                == ZIP_OK
            && zipWriteInFileInZip(zip, bytes.constData(), unsigned(bytes.size())) == ZIP_OK
            && zipCloseFileInZip(zip) == ZIP_OK;
    }
    return zip && zipClose(zip, nullptr) == ZIP_OK && written ? path : QString();
}

void DevicePageTest::clicksOnLampsAndTonesReachTheBox()
{
    QVERIFY(startBox());
    TarveloDevice device(-1);
    PageDevice page(&device);
    QVERIFY(!page.isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(page.isEnabled(), WinMs);

    // Every lamp and tone where the box has it: lamps 0 to 9 in the two top rows, 10 and 11
    // below them, the tones in rows 7 and 8. A colour button sends nothing.
    QStringList expected;
    for (int lamp = 0; lamp < 10; ++lamp) {
        QTest::mouseClick(at(page, lamp / 5, lamp % 5), Qt::LeftButton);
        expected << QStringLiteral("led=%1").arg(lamp);
    }
    for (int row : {2, 4, 7, 8})
        for (int column : {1, 2, 3})
            if (column != 2 || row > 4)
                QTest::mouseClick(at(page, row, column), Qt::LeftButton);
    expected += QString("led=10 led=11 stim=13 stim=17 stim=15 stim=12 stim=16 stim=14").split(' ');
    QTRY_COMPARE(m_box->commands().mid(m_box->commands().size() - expected.size()), expected);

    m_box->kill();
    QTRY_VERIFY(!page.isEnabled());
}

void DevicePageTest::stateReportsLightLampsAndSinkControls()
{
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    TarveloDevice device(-1);
    PageDevice page(&device);
    QTRY_VERIFY_WITH_TIMEOUT(page.isEnabled(), WinMs);
    QPushButton *pedal = at(page, 7, 0);

    box.send("state=101000000001;btns=100000010");
    QTRY_VERIFY(pedal->isChecked());
    QCOMPARE(litLamps(page), "101000000001");
    QVERIFY(at(page, 4, 1)->isChecked() && !at(page, 4, 0)->isChecked());
    // A shorter report leaves the lamps behind it as they are.
    box.send("state=010;btns=");
    QTRY_VERIFY(!pedal->isChecked());
    QVERIFY(!at(page, 4, 1)->isChecked());
    QCOMPARE(litLamps(page), "010000000001");
}

void DevicePageTest::optionsRoundTripWithTheBoxAndALostLinkEmptiesThePanel()
{
    QVERIFY(link());
    TarveloSettingsWidget dialog(false);
    QVERIFY(!dialog.findChild<QLineEdit *>() && !childWithText<QPushButton>(&dialog, ">"));
    QCheckBox *audio = childWithText<QCheckBox>(&dialog, "Invert audio");
    QCheckBox *pedals = childWithText<QCheckBox>(&dialog, "Invert pedals");
    QCheckBox *flashAll = childWithText<QCheckBox>(&dialog, "Flash all leds on start");
    QVERIFY(!audio->isEnabled());
    QTRY_VERIFY(audio->isEnabled() && pedals->isEnabled() && flashAll->isEnabled());

    audio->click();
    QTRY_VERIFY(audio->isEnabled() && audio->isChecked());
    // The pedals' box greys the audio box, not itself, until the answer.
    pedals->click();
    QVERIFY(!audio->isEnabled() && pedals->isEnabled());
    QTRY_VERIFY(audio->isEnabled());
    flashAll->click();
    QTRY_VERIFY(flashAll->isEnabled());
    audio->click();
    QTRY_VERIFY(audio->isEnabled());
    const QStringList sent = m_box->commands();
    const QStringList expected = QString("getsettings settings=audioInvert=1; getsettings "
                                         "settings=pedalInvert=1; getsettings settings=flashAll=1; "
                                         "getsettings settings=audioInvert=0; getsettings")
                                     .split(' ');
    QCOMPARE(sent.mid(sent.indexOf("getsettings")), expected);
    QCOMPARE(QList<bool>({audio->isChecked(), pedals->isChecked(), flashAll->isChecked()}),
             QList<bool>({false, true, true}));

    auto *serial = dialog.findChildren<QLabel *>().at(1);
    auto *version = dialog.findChildren<QLabel *>().at(3);
    QCOMPARE(serial->text(), "240315");
    QCOMPARE(version->text(), "2.4.1");
    m_box->kill();
    QTRY_VERIFY(!audio->parentWidget()->isEnabled());
    QVERIFY(serial->text().isEmpty() && version->text().isEmpty());
    QVERIFY(pedals->isChecked() && flashAll->isChecked());
}

void DevicePageTest::controlClickOpensTheSettingsOverTheShowingTabAndWritesTheSerial()
{
    QVERIFY(startBox());
    MainWindow window;
    window.show();
    window.tabs()->setCurrentIndex(MainWindow::SettingsPage);
    QTRY_COMPARE_WITH_TIMEOUT(window.model()->device()->version(), "2.4.1", WinMs);
    QString before, after;
    when([] { return modal<TarveloSettingsWidget>(); },
         [&] {
             auto *edit = modal<TarveloSettingsWidget>()->findChild<QLineEdit *>();
             before = edit->text();
             edit->setText("2611A7");
             childWithText<QPushButton>(modal<TarveloSettingsWidget>(), ">")->click();
             edit->setText("typed on");
             when([&] { return window.model()->device()->serialNumber() == "2611A7"; },
                  [&, edit] {
                      after = edit->text();
                      modal<TarveloSettingsWidget>()->reject();
                  });
         });
    QTest::mouseClick(window.tarveloStatusBar()->findChild<QPushButton *>(), Qt::LeftButton,
                      Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier);
    QCOMPARE(window.tabs()->currentIndex(), int(MainWindow::SettingsPage));
    QCOMPARE(before, "240315");
    QCOMPARE(after, "2611A7");
    const QStringList sent = m_box->commands();
    QCOMPARE(sent.mid(sent.indexOf("writesn=2611A7"), 3),
             QStringList({"writesn=2611A7", "sn", "version"}));
}

void DevicePageTest::packagesGiveTheRightVerdict()
{
    QFETCH(QStringList, names);
    QFETCH(bool, valid);
    QFETCH(QString, hex);
    QFETCH(QString, note);
    const QString path = package(names.replaceInStrings("@dir/", m_dir.path() + '/'));
    QVERIFY(names.isEmpty() ? TestFiles::write(path, "PK, but no") : !path.isEmpty());
    // As the model leaves it, the working folder is the data folder.
    QVERIFY(QDir().mkpath(m_data.root()) && QDir::setCurrent(m_data.root()));
    QString folder;
    {
        ComUpdaterWidget updater(1, "tvl", "self-avrdude", {});
        updater.openPackage(path);
        folder = updater.tempFolder();
        QVERIFY(folder.startsWith(m_data.root() + "firmware-"));
        QCOMPARE(childWithText<QCheckBox>(&updater, "Valid firmware")->isChecked(), valid);
        QPushButton *update = childWithText<QPushButton>(&updater, "Update firmware");
        QCOMPARE(update->isEnabled(), valid);
        QVERIFY(!valid || update->toolTip().split('\n').contains(folder + '/' + hex));
        // Only the tool's entry is marked executable in the archive.
        QVERIFY(!valid || !QFileInfo(folder + '/' + hex).isExecutable());
        QVERIFY(updater.findChild<QLabel *>()->text().contains(note));
        // A refused or broken package writes nothing at all.
        QCOMPARE(QDir(folder).isEmpty(), !note.isEmpty());
    }
    QVERIFY(!QFileInfo::exists(folder));
    QVERIFY(!QFileInfo::exists(m_data.root() + "../evil.hex"));
    QVERIFY(!QFileInfo::exists(m_dir.filePath("evil.hex")));
}

void DevicePageTest::verdictShowsForEachRun()
{
    QFETCH(QByteArray, tool);
    QFETCH(QString, verdict);
    setExtraPorts({"/dev/pts/990", "/dev/pts/991"});
    ComUpdaterWidget updater(1, "tvl", "self-avrdude", {"/dev/pts/991"});
    QCheckBox *other = childWithText<QCheckBox>(&updater, "/dev/pts/990");
    QVERIFY(!other->isChecked() && other->isEnabled());
    updater.openPackage(package({"avrdude.conf", "box.hex", "avrdude"}, {{"avrdude", tool}}));
    QPushButton *update = childWithText<QPushButton>(&updater, "Update firmware");
    QString shown;
    bool busy = false;
    answerMessageBox(&shown, [&] {
        // The verdict comes while the run still counts as under way: no closing then.
        updater.reject();
        busy = !other->isEnabled() && !update->isEnabled() && !updater.tempFolder().isEmpty();
    });
    update->click();
    auto *output = updater.findChild<QPlainTextEdit *>();
    if (verdict != Warning) {
        QTRY_VERIFY(output->toPlainText().contains("-cwiring"));
        QVERIFY(TestFiles::write(updater.tempFolder() + "/avrdude.go", ""));
    }
    QTRY_COMPARE(shown, verdict);
    QVERIFY(busy);
    QTRY_VERIFY(other->isEnabled() && update->isEnabled());
    // Only the ticked port ran, and each argument arrived whole, though the folder has a blank
    // in its path.
    const QString folder = updater.tempFolder();
    if (verdict != Warning)
        QCOMPARE(output->toPlainText(),
                 QStringList({"-C" + folder + "/avrdude.conf", "-v", "-V", "-patmega2560",
                              "-cwiring", "-P/dev/pts/991", "-b115200", "-D",
                              "-Uflash:w:" + folder + "/box.hex:i", ""})
                     .join('\n'));
}

void DevicePageTest::realAvrdudeThroughTheDialogsEndsInTheWarning()
{
    QVERIFY(link());
    const QString avrdudePackage =
        package({"avrdude.conf", "box.hex", "avrdude"},
                {{"avrdude.conf", TestFiles::read("/etc/avrdude.conf")},
                 {"box.hex", ":00000001FF\n"},
                 // The tool waits half a minute for a bootloader that never answers; what is
                 // tested is said within seconds.
                 {"avrdude", "#!/bin/sh\nexec timeout 4 avrdude \"$@\"\n"}});
    TarveloSettingsWidget settings(false);
    QString verdict, output, folder;
    bool linkDown = false;
    when([] { return modal<ComUpdaterWidget>(); },
         [&] {
             ComUpdaterWidget *updater = modal<ComUpdaterWidget>();
             linkDown = !m_model->device()->isConnected();
             updater->openPackage(avrdudePackage);
             folder = updater->tempFolder();
             QPushButton *update = childWithText<QPushButton>(updater, "Update firmware");
             if (!update->isEnabled())
                 return updater->reject();
             answerMessageBox(&verdict, [&output, updater] {
                 output = updater->findChild<QPlainTextEdit *>()->toPlainText();
             });
             when([update] { return update->isEnabled(); }, [updater] { updater->reject(); });
             update->click();
         });
    childWithText<QPushButton>(&settings, "Flash")->click();

    QVERIFY(linkDown);
    QVERIFY(folder.startsWith(m_data.root()) && !QFileInfo::exists(folder));
    // The emulator is no bootloader: the real tool took the command line, with the link's port
    // as the one to write, and then failed.
    QCOMPARE(verdict, Warning);
    QVERIFY2(output.contains(QRegularExpression("Using Port +: " + m_box->path()))
                 && output.contains(QRegularExpression("Using Programmer +: wiring")),
             qPrintable(output));
    QTRY_VERIFY_WITH_TIMEOUT(m_model->device()->isConnected(), 3 * WinMs);
}

QTEST_MAIN(DevicePageTest)
#include "tst_devicepage.moc"
