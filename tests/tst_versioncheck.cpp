#include "foundation/VersionChecker.h"
#include "foundation/VersionInfo.h"
#include "foundation/widgets/NewVersionButton.h"

#include <QDesktopServices>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include <memory>

namespace {
// A version service on loopback: answers every GET with the answer of the moment and keeps
// the paths it was asked for.
struct VersionService : QTcpServer
{
    QByteArray answer;
    QStringList asked;

    QString address(const char *path) const
    {
        return QStringLiteral("http://127.0.0.1:%1").arg(serverPort()) + QLatin1String(path);
    }
    void incomingConnection(qintptr descriptor) override
    {
        auto *socket = new QTcpSocket(this);
        socket->setSocketDescriptor(descriptor);
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
            if (!socket->peek(socket->bytesAvailable()).contains("\r\n\r\n"))
                return;
            asked << QString::fromUtf8(socket->readAll().split(' ').value(1));
            socket->write("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: "
                          + QByteArray::number(answer.size()) + "\r\n\r\n" + answer);
            socket->disconnectFromHost();
        });
    }
};

QStringList printed;

QPushButton *buttonOf(const NewVersionButton &widget)
{
    return widget.findChild<QPushButton *>();
}
} // namespace

class VersionCheckTest : public QObject
{
    Q_OBJECT
public slots:
    // Stands in for the browser.
    void open(const QUrl &url) { m_opened << url; }

private slots:
    void initTestCase();
    void validAnswerShowsTheButtonWithTextToolTipAndLink();
    void answersRead_data();
    void answersRead();
    void laterAnswersHideAndShowTheButtonWithoutAWord();

private:
    VersionService m_service;
    QList<QUrl> m_opened;
    quint16 m_port = 0;
};

void VersionCheckTest::initTestCase()
{
    QVERIFY(m_service.listen(QHostAddress::LocalHost));
    m_port = m_service.serverPort();
    qputenv("TARVELO_VERSION_URL", m_service.address("/repo/version.php").toUtf8());
    QCoreApplication::setApplicationName(QStringLiteral("Tarvelo"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.0.6.0"));
    QDesktopServices::setUrlHandler(QStringLiteral("http"), this, "open");
}

void VersionCheckTest::validAnswerShowsTheButtonWithTextToolTipAndLink()
{
    const QString link = m_service.address("/download/Tarvelo-1.2.0.zip");
    m_service.answer = R"({"valid": true, "version": "1.2.0", "link": ")" + link.toUtf8() + "\"}";
    NewVersionButton first(QStringLiteral("New version "), QString());
    first.show();
    QPushButton *button = buttonOf(first);
    QVERIFY(!button->isVisible());
    QTRY_VERIFY(button->isVisible());
    QCOMPARE(button->text(), QStringLiteral("New version 1.2.0"));
    QCOMPARE(button->toolTip(), QStringLiteral("Click to download new version 1.2.0"));
    QCOMPARE(m_service.asked,
             QStringList(QStringLiteral("/repo/version.php?app=Tarvelo&version=1.0.6&locale=")
                         + QLocale::system().name() + QStringLiteral("&platform=")
                         + QSysInfo::productType()));
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(m_opened, QList<QUrl>({QUrl(link)}));

    // A second button shows the known answer, with the application's name in front, and asks
    // nothing; nor is the service asked again within 5 s of the last time.
    NewVersionButton second {QString(), QString()};
    second.show();
    QTRY_COMPARE(buttonOf(second)->text(), QStringLiteral("Tarvelo 1.2.0"));
    QVERIFY(buttonOf(second)->isVisible());
    VersionChecker::StartChecking(true, 600);
    VersionChecker::FindNewVersionAsync();
    // Whatever the checker sent would have reached the service before this.
    QNetworkAccessManager network;
    std::unique_ptr<QNetworkReply> later(network.get(QNetworkRequest(m_service.address("/later"))));
    QVERIFY(QSignalSpy(later.get(), &QNetworkReply::finished).wait());
    QCOMPARE(m_service.asked.size(), 2);
}

void VersionCheckTest::answersRead_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("offered");
    QTest::addColumn<QString>("version");
    QTest::newRow("on offer") << QByteArray(R"({"valid": true, "version": "1.3.0"})") << true
                              << "1.3.0";
    QTest::newRow("not valid") << QByteArray(R"({"valid": false, "version": "1.3.0"})") << false
                               << "1.3.0";
    QTest::newRow("valid as a word") << QByteArray(R"({"valid": "true"})") << false << QString();
    QTest::newRow("a page") << QByteArray("<html>Service unavailable</html>") << false << QString();
    QTest::newRow("a list") << QByteArray(R"([{"valid": true}])") << false << QString();
    QTest::newRow("nothing, as from a failed request") << QByteArray() << false << QString();
}

void VersionCheckTest::answersRead()
{
    QFETCH(QByteArray, answer);
    const VersionInfo info = VersionInfo::parse(answer);
    QTEST(info.valid, "offered");
    QTEST(info.version, "version");
}

// Each answer comes by a request at least 5 s after the one before.
void VersionCheckTest::laterAnswersHideAndShowTheButtonWithoutAWord()
{
    // In a window without a layout, as in the main window: the button's coming and going then
    // leaves the window's size alone, which the offscreen platform would remark on.
    QWidget window;
    NewVersionButton widget(QStringLiteral("New version "), QString(), &window);
    window.show();
    QPushButton *button = buttonOf(widget);
    QTRY_VERIFY(button->isVisible());
    const QtMessageHandler previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { printed << text; });
    m_opened.clear();
    // Gone and back: a failed request hides the button, the next offer shows it anew.
    for (const QByteArray &answer :
         {QByteArray(), QByteArray(R"({"valid": true, "version": "1.4.0"})")}) {
        m_service.answer = answer;
        if (answer.isEmpty())
            m_service.close();
        else
            QVERIFY(m_service.listen(QHostAddress::LocalHost, m_port));
        QSignalSpy found(VersionChecker::Instance(), &VersionChecker::versionFound);
        const auto asked = [&found] {
            VersionChecker::FindNewVersionAsync();
            return !found.isEmpty();
        };
        QTRY_VERIFY2_WITH_TIMEOUT(asked(), answer.constData(), 15000);
        QTRY_COMPARE(button->isVisible(), !answer.isEmpty());
    }
    QCOMPARE(button->text(), QStringLiteral("New version 1.4.0"));
    QTest::mouseClick(button, Qt::LeftButton); // no link, nothing to open
    qInstallMessageHandler(previous);
    QVERIFY(m_opened.isEmpty());
    QVERIFY2(printed.isEmpty(), qPrintable(printed.join(QLatin1Char('\n'))));
}

QTEST_MAIN(VersionCheckTest)
#include "tst_versioncheck.moc"
