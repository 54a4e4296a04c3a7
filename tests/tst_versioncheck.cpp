#include "foundation/VersionChecker.h"
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
class VersionService : public QObject
{
public:
    bool listen()
    {
        connect(&m_server, &QTcpServer::newConnection, this, &VersionService::accept);
        return m_server.listen(QHostAddress::LocalHost);
    }
    QString address(const char *path) const
    {
        return QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort())
            + QLatin1String(path);
    }
    void close() { m_server.close(); }

    QByteArray answer;
    QStringList asked;

private:
    void accept()
    {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            auto request = std::make_shared<QByteArray>();
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket, request] {
                *request += socket->readAll();
                if (!request->contains("\r\n\r\n"))
                    return;
                asked << QString::fromUtf8(request->split(' ').value(1));
                socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n"
                              "Connection: close\r\nContent-Length: "
                              + QByteArray::number(answer.size()) + "\r\n\r\n" + answer);
                socket->disconnectFromHost();
            });
        }
    }

    QTcpServer m_server;
};

QStringList printed;

void keepPrinted(QtMsgType, const QMessageLogContext &, const QString &text)
{
    printed << text;
}

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
    void laterAnswersHideAndShowTheButtonWithoutAWord();

private:
    VersionService m_service;
    QList<QUrl> m_opened;
};

void VersionCheckTest::initTestCase()
{
    QVERIFY(m_service.listen());
    qputenv("TARVELO_VERSION_URL", m_service.address("/repo/version.php").toUtf8());
    QCoreApplication::setApplicationName(QStringLiteral("Tarvelo"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.0.6.0"));
    QDesktopServices::setUrlHandler(QStringLiteral("http"), this, "open");
}

void VersionCheckTest::validAnswerShowsTheButtonWithTextToolTipAndLink()
{
    const QString link = m_service.address("/download/Tarvelo-1.2.0.zip");
    m_service.answer = R"({"valid": true, "version": "1.2.0", "date": "2025-01-20", "link": ")"
        + link.toUtf8() + "\"}";
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

    // A second button shows the known answer at once, with the application's name in front,
    // and asks nothing; nor is the service asked again within 5 s of the last time.
    NewVersionButton second {QString(), QString()};
    second.show();
    QTRY_VERIFY(buttonOf(second)->isVisible());
    QCOMPARE(buttonOf(second)->text(), QStringLiteral("Tarvelo 1.2.0"));
    VersionChecker::StartChecking(true, 600);
    VersionChecker::FindNewVersionAsync();
    // Whatever the checker sent would have reached the service before this.
    QNetworkAccessManager network;
    std::unique_ptr<QNetworkReply> later(
        network.get(QNetworkRequest(QUrl(m_service.address("/later")))));
    QSignalSpy done(later.get(), &QNetworkReply::finished);
    QVERIFY(done.wait());
    QCOMPARE(m_service.asked.size(), 2);
    QCOMPARE(m_service.asked.last(), QStringLiteral("/later"));
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
    const QtMessageHandler previous = qInstallMessageHandler(keepPrinted);

    struct Step
    {
        const char *what;
        QByteArray answer; // empty: the service is gone
        QString text;      // empty: the button is hidden
    };
    const Step steps[] = {
        {"an invalid answer hides it", R"({"valid": false, "version": "1.3.0"})", QString()},
        {"an answer without a link shows it", R"({"valid": true, "version": "1.3.0"})",
         QStringLiteral("New version 1.3.0")},
        {"an answer that isn't JSON hides it", "<html>Service unavailable</html>", QString()},
        {"a valid answer shows it again", R"({"valid": true, "version": "1.4.0"})",
         QStringLiteral("New version 1.4.0")},
        {"an unreachable service hides it", QByteArray(), QString()},
    };
    m_opened.clear();
    for (const Step &step : steps) {
        m_service.answer = step.answer;
        if (step.answer.isEmpty())
            m_service.close();
        QSignalSpy found(VersionChecker::Instance(), &VersionChecker::versionFound);
        const auto asked = [&found] {
            VersionChecker::FindNewVersionAsync();
            return !found.isEmpty();
        };
        QTRY_VERIFY2_WITH_TIMEOUT(asked(), step.what, 15000);
        QTRY_COMPARE(button->isVisible(), !step.text.isEmpty());
        if (!step.text.isEmpty()) {
            QCOMPARE(button->text(), step.text);
            QTest::mouseClick(button, Qt::LeftButton); // no link, nothing to open
        }
    }
    qInstallMessageHandler(previous);
    QVERIFY(m_opened.isEmpty());
    QVERIFY2(printed.isEmpty(), qPrintable(printed.join(QLatin1Char('\n'))));
}

QTEST_MAIN(VersionCheckTest)
#include "tst_versioncheck.moc"
