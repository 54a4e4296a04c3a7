#include "ComUpdaterWidget.h"

#include "app/TarveloModel.h"
#include "device/FirmwareFlasher.h"
#include "device/FirmwarePackage.h"
#include "device/PortCatalog.h"
#include "foundation/AppHelper.h"
#include "foundation/FileUtilities.h"
#include "foundation/widgets/AppDialogs.h"
#include "foundation/widgets/MediaHelper.h"

#include <QCheckBox>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QVBoxLayout>

using namespace FirmwarePackage;

namespace {
QIcon folderIcon()
{
    QString path = AppHelper::findInResources(QStringLiteral("folder_search.svg"));
    if (path.isEmpty())
        path = AppHelper::findInResources(QStringLiteral("folder.svg"));
    return MediaHelper::icon(path.remove(QStringLiteral("qrc")));
}
} // namespace

ComUpdaterWidget::ComUpdaterWidget(int type, const QString &extension, const QString &tool,
                                   const QStringList &ports, QWidget *parent)
    : QDialog(parent)
    , m_requiredFiles(requiredFiles(type, tool))
    , m_type(type)
    , m_extension(extension)
    , m_tool(tool)
    // The model makes the data folder the working folder; its own word is surer.
    , m_baseFolder(TarveloModel::instance() ? TarveloModel::instance()->rootFolder()
                                            : QDir::currentPath())
{
    setWindowTitle(tr("Update firmware"));
    m_openButton = new QPushButton(folderIcon(), tr("Open firmware file"));
    connect(m_openButton, &QPushButton::clicked, this, &ComUpdaterWidget::choosePackage);
    m_label = new QLabel;
    m_label->setWordWrap(true);
    m_validBox = new QCheckBox(tr("Valid firmware"));
    m_validBox->setEnabled(false);

    m_portsPanel = new QWidget;
    auto *portsLayout = new QVBoxLayout(m_portsPanel);
    portsLayout->setContentsMargins(0, 0, 0, 0);
    const bool fixed = ports.size() == 1 && ports.constFirst().startsWith(QLatin1Char('-'));
    const QString fixedLocation =
        fixed ? PortCatalog::systemLocation(ports.constFirst().mid(1)) : QString();
    const QList<PortCandidate> candidates = PortCatalog::candidates();
    for (const PortCandidate &candidate : candidates) {
        // The link may know a port by its system name and the list by its path.
        if (fixed && PortCatalog::systemLocation(candidate.name) != fixedLocation)
            continue;
        auto *box = new QCheckBox(candidate.name);
        box->setChecked(fixed || ports.contains(candidate.name));
        box->setEnabled(!fixed);
        portsLayout->addWidget(box);
        m_portBoxes << box;
    }

    m_updateButton = new QPushButton(tr("Update firmware"));
    m_updateButton->setEnabled(false);
    connect(m_updateButton, &QPushButton::clicked, this, &ComUpdaterWidget::update);
    m_output = new QPlainTextEdit;
    m_output->setReadOnly(true);
    m_output->hide();

    auto *layout = new QVBoxLayout(this);
    auto *packageLayout = new QVBoxLayout;
    packageLayout->addWidget(m_openButton);
    packageLayout->addWidget(m_label, 100);
    layout->addLayout(packageLayout);
    layout->addWidget(m_validBox);
    layout->addSpacing(10);
    layout->addWidget(m_portsPanel);
    layout->addWidget(m_updateButton);
    layout->addWidget(m_output, 100);
}

ComUpdaterWidget::~ComUpdaterWidget()
{
    dropPackage();
}

void ComUpdaterWidget::done(int result)
{
    // The tool is writing the board: stopping it halfway would leave the box without firmware.
    if (m_flashing)
        return;
    dropPackage();
    QDialog::done(result);
}

void ComUpdaterWidget::choosePackage()
{
    // The old folder goes even if the choice is cancelled.
    dropPackage();
    const QString path =
        QFileDialog::getOpenFileName(this, tr("Open firmware file"), QString(),
                                     QStringLiteral("Firmware (*.%1)").arg(m_extension));
    if (!path.isEmpty())
        openPackage(path);
}

void ComUpdaterWidget::openPackage(const QString &path)
{
    dropPackage();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray archive = file.readAll();
    m_firmwarePath = path;
    m_tempFolder = makeTempFolder();
    const UnpackResult unpacked = unpack(archive, m_tempFolder);
    QString text = m_firmwarePath;
    if (unpacked.outcome == Unpacked::Unreadable)
        text += QLatin1Char('\n') + tr("This is no readable ZIP archive.");
    if (unpacked.outcome == Unpacked::Refused)
        text += QLatin1Char('\n')
            + tr("Refused: \"%1\" would be written outside the package's folder.")
                  .arg(unpacked.entry);
    m_label->setText(text);
    if (unpacked.outcome == Unpacked::Done)
        m_files = findFiles(m_tempFolder, m_requiredFiles);
    qDebug() << "FIRMS" << m_files.size() << m_requiredFiles;
    showValidity();
}

void ComUpdaterWidget::dropPackage()
{
    if (!m_tempFolder.isEmpty())
        FileUtilities::clearFolder(m_tempFolder, true);
    m_tempFolder.clear();
    // Whatever was found has gone with the folder.
    m_files.clear();
    showValidity();
}

QString ComUpdaterWidget::makeTempFolder() const
{
    QString folder;
    do {
        folder = FileUtilities::FolderSlash(m_baseFolder) + QStringLiteral("firmware-")
            + QString::number(QRandomGenerator::global()->bounded(1000, 9999));
    } while (QFileInfo::exists(folder));
    FileUtilities::createIfNotExists(folder);
    qDebug() << "Firmware folder" << QDir(folder).absolutePath();
    return folder;
}

void ComUpdaterWidget::showValidity()
{
    const bool valid = !m_tempFolder.isEmpty() && m_files.size() == m_requiredFiles.size();
    m_validBox->setChecked(valid);
    m_updateButton->setToolTip(QStringList(m_files.values()).join(QLatin1Char('\n')));
    m_updateButton->setEnabled(valid && !m_flashing);
}

void ComUpdaterWidget::update()
{
    QStringList ports;
    for (const QCheckBox *box : qAsConst(m_portBoxes)) {
        if (box->isChecked())
            ports << box->text();
    }
    if (ports.isEmpty())
        return;
    auto *flasher = new FirmwareFlasher(m_type, m_tool, m_files, this);
    connect(flasher, &FirmwareFlasher::output, m_output, [this](const QString &text) {
        m_output->moveCursor(QTextCursor::End);
        m_output->insertPlainText(text);
    });
    connect(flasher, &FirmwareFlasher::portDone, this, [](const QString &, bool errors) {
        if (errors)
            AppHelper::warningMessage(tr("There were errors while uploading firmware"), QString(),
                                      QMessageBox::Warning);
        else
            AppHelper::warningMessage(tr("Done!"), QString(), QMessageBox::Information);
    });
    connect(flasher, &FirmwareFlasher::finished, this, [this, flasher] {
        setFlashing(false);
        flasher->deleteLater();
    });
    m_output->clear();
    m_output->show();
    setFlashing(true);
    flasher->flash(ports);
}

void ComUpdaterWidget::setFlashing(bool on)
{
    m_flashing = on;
    m_openButton->setEnabled(!on);
    m_portsPanel->setEnabled(!on);
    showValidity();
}
