#include "app/TarveloModel.h"
#include "data/TarveloSettings.h"
#include "foundation/MetaDescriptor.h"
#include "foundation/NTSettings.h"
#include "foundation/widgets/PropertyListControl.h"
#include "foundation/widgets/PropertyTabWidget.h"
#include "foundation/widgets/SettingsWithLanguage.h"
#include "foundation/widgets/propertyviews/BasePropertyView.h"
#include "foundation/widgets/propertyviews/DualDoubleSpinBox.h"
#include "support/TestDataFolder.h"
#include "ui/PageSettings.h"

#include <QCheckBox>
#include <QColor>
#include <QDate>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QtTest>

#include <memory>

// One property of every kind the form tells apart, with no file behind them.
class FormSettings : public NTSettings
{
    Q_OBJECT
    Q_PROPERTY(int Count MEMBER m_count NOTIFY changed)
    Q_CLASSINFO("CountDefault", "5")
    Q_PROPERTY(int Locked MEMBER m_count NOTIFY changed)
    Q_CLASSINFO("LockedDefault", "5")
    Q_CLASSINFO("LockedReadOnly", "true")
    Q_PROPERTY(int Quiet MEMBER m_count NOTIFY changed)
    Q_CLASSINFO("QuietDefault", "5")
    Q_CLASSINFO("QuietNoDefault", "true")
    Q_PROPERTY(double Ratio MEMBER m_ratio NOTIFY changed)
    Q_CLASSINFO("RatioDefault", "1.25")
    Q_PROPERTY(float Scale MEMBER m_scale NOTIFY changed)
    Q_PROPERTY(bool Flag MEMBER m_flag NOTIFY changed)
    Q_CLASSINFO("FlagCategory", "Main")
    Q_PROPERTY(QString Name MEMBER m_text NOTIFY changed)
    Q_PROPERTY(QString Notes MEMBER m_text NOTIFY changed)
    Q_CLASSINFO("NotesSpecialType", "Multiline")
    Q_PROPERTY(QString File MEMBER m_text NOTIFY changed)
    Q_CLASSINFO("FileSpecialType", "PickFile:*.txt")
    Q_PROPERTY(QString Folder MEMBER m_text NOTIFY changed)
    Q_CLASSINFO("FolderSpecialType", "pickfolder")
    Q_PROPERTY(int Level MEMBER m_count NOTIFY changed)
    Q_CLASSINFO("LevelSpecialType", "slider")
    Q_CLASSINFO("LevelDefault", "4")
    Q_CLASSINFO("LevelMaximum", "200")
    Q_PROPERTY(QString Choice MEMBER m_text NOTIFY changed)
    Q_CLASSINFO("ChoiceSpecialType", "StringList")
    Q_PROPERTY(int Options MEMBER m_count NOTIFY changed)
    Q_CLASSINFO("OptionsSpecialType", "StringList")
    Q_PROPERTY(QString Pick MEMBER m_text NOTIFY changed)
    Q_CLASSINFO("PickSpecialType", "EnumStringList")
    Q_PROPERTY(QPointF Span MEMBER m_point NOTIFY changed)
    Q_CLASSINFO("SpanSpecialType", "Range")
    Q_PROPERTY(QString Odd MEMBER m_text NOTIFY changed)
    Q_CLASSINFO("OddSpecialType", "Sliders")
    Q_PROPERTY(Mode Kind MEMBER m_mode NOTIFY changed)
    Q_CLASSINFO("KindDefault", "Mode::Second")
    Q_PROPERTY(QPoint Origin MEMBER m_origin NOTIFY changed)
    Q_CLASSINFO("OriginDefault", "QPoint(5, 6)")
    Q_PROPERTY(QPointF Anchor MEMBER m_point NOTIFY changed)
    Q_PROPERTY(QDate Day MEMBER m_day NOTIFY changed)
    Q_PROPERTY(QColor Tint MEMBER m_tint NOTIFY changed)
    Q_PROPERTY(QSize Frame MEMBER m_frame NOTIFY changed)
    // The one property of its category, shown only while Flag is set.
    Q_PROPERTY(int Extra MEMBER m_count NOTIFY changed)
    Q_CLASSINFO("ExtraCategory", "Extras")
    Q_CLASSINFO("ExtraVisibleBound", "Flag")

public:
    enum Mode { First, Second };
    Q_ENUM(Mode)

    FormSettings() { applyDeclaredDefaults(); }

signals:
    void changed();

private:
    int m_count = 0;
    double m_ratio = 0;
    float m_scale = 0;
    bool m_flag = false;
    QString m_text;
    QPointF m_point;
    Mode m_mode = First;
    QPoint m_origin;
    QDate m_day;
    QColor m_tint;
    QSize m_frame;
};

class PropertyFormTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_data.isValid()); }
    void init();
    void cleanup();

    void eachKindOfPropertyGetsItsView_data()
    {
        TestFiles::addRows(QStringLiteral("tables/property_views.txt"));
    }
    void eachKindOfPropertyGetsItsView();
    void eachViewShowsTheValueAndWritesItsInput_data();
    void eachViewShowsTheValueAndWritesItsInput();
    void checkVisibility_data() { TestFiles::addRows(QStringLiteral("tables/visibility.txt")); }
    void checkVisibility();
    void categoriesAreLabelledAndBoundOnesFollowTheirSource();
    void settingsPageStoresAtOnceAndMarksChanges();
    void storedLanguageIsKept();

private:
    BasePropertyView *view(const char *property) const;

    TestDataFolder m_data;
    std::unique_ptr<TarveloModel> m_model;
    std::unique_ptr<PageSettings> m_page;
};

void PropertyFormTest::init()
{
    m_data.clear();
    m_model = std::make_unique<TarveloModel>();
    m_page = std::make_unique<PageSettings>(m_model.get());
}

void PropertyFormTest::cleanup()
{
    m_page.reset();
    m_model.reset();
}

BasePropertyView *PropertyFormTest::view(const char *property) const
{
    return m_page->findChild<PropertyListControl *>()->getWidgetInfo(property).view;
}

void PropertyFormTest::eachKindOfPropertyGetsItsView()
{
    QFETCH(QString, view);
    QFETCH(int, span);
    QFETCH(bool, defaultButton);
    FormSettings settings;
    PropertyListControl form(&settings);
    const PropertyWidgetInfo info = form.getWidgetInfo(QTest::currentDataTag());
    QVERIFY(info.view);
    QString made = QString::fromLatin1(info.view->metaObject()->className());
    if (const auto *dual = qobject_cast<DualDoubleSpinBox *>(info.view))
        made += QLatin1Char('/')
            + QString::fromLatin1(
                  QMetaEnum::fromType<DualDoubleSpinBox::DualMode>().valueToKey(dual->mode()))
                  .mid(9);
    QCOMPARE(made, view);
    QCOMPARE(bool(info.view->defaultButton()), defaultButton);
    QCOMPARE(info.view->isEnabled(), info.name != QLatin1String("Locked"));
    int columns = 0;
    std::unique_ptr<BasePropertyView> another(
        PropertyListControl::getPropertyView(info.view->description(), &columns));
    QCOMPARE(columns, span);
}

void PropertyFormTest::eachViewShowsTheValueAndWritesItsInput_data()
{
    QTest::addColumn<QVariant>("stored");  // in the object before the form is made
    QTest::addColumn<QVariant>("shown");   // by the editor then
    QTest::addColumn<QVariant>("input");   // into the editor
    QTest::addColumn<QVariant>("written"); // into the object
    const QDate day(2024, 3, 5);
    QTest::newRow("Ratio") << QVariant(1.25) << QVariant(1.25) << QVariant(2.5) << QVariant(2.5);
    QTest::newRow("Name") << QVariant("abc") << QVariant("abc") << QVariant("xy") << QVariant("xy");
    QTest::newRow("File") << QVariant("a.txt") << QVariant("a.txt") << QVariant("b")
                          << QVariant("b");
    QTest::newRow("Notes") << QVariant("a\nb") << QVariant("a\nb") << QVariant("c")
                           << QVariant("c");
    QTest::newRow("Level") << QVariant(4) << QVariant(4) << QVariant(150) << QVariant(150);
    QTest::newRow("Kind") << QVariant("Second") << QVariant("Second") << QVariant("First")
                          << QVariant::fromValue(FormSettings::First);
    QTest::newRow("Day") << QVariant(day) << QVariant(day.startOfDay())
                         << QVariant(day.addDays(1).startOfDay()) << QVariant(day.addDays(1));
    // The first number of two; the second stays, and in a range is never below the first.
    QTest::newRow("Origin") << QVariant(QPoint(5, 6)) << QVariant(5.0) << QVariant(3.0)
                            << QVariant(QPoint(3, 6));
    QTest::newRow("Span") << QVariant(QPointF(1, 4)) << QVariant(1.0) << QVariant(5.0)
                          << QVariant(QPointF(5, 5));
}

void PropertyFormTest::eachViewShowsTheValueAndWritesItsInput()
{
    QFETCH(QVariant, stored);
    QFETCH(QVariant, shown);
    QFETCH(QVariant, input);
    QFETCH(QVariant, written);
    const char *name = QTest::currentDataTag();
    FormSettings settings;
    QVERIFY(settings.setProperty(name, stored));
    PropertyListControl form(&settings);
    const BasePropertyView *view = form.getWidgetInfo(name).view;
    QWidget *editor = view->getEditor();
    QVERIFY(editor->isVisibleTo(&form));
    const QMetaProperty user = editor->metaObject()->userProperty();
    QCOMPARE(user.read(editor), shown);
    if (const QPushButton *mark = view->defaultButton()) // the value stored is the default
        QVERIFY(mark->styleSheet().contains(QLatin1String("transparent")));
    if (auto *line = qobject_cast<QLineEdit *>(editor)) { // only typing writes a line
        line->selectAll();
        QTest::keyClicks(line, input.toString());
    } else {
        QVERIFY(user.write(editor, input));
    }
    QCOMPARE(settings.property(name), written);
    QCOMPARE(user.read(editor), input); // and the editor keeps it
}

void PropertyFormTest::checkVisibility()
{
    QFETCH(QString, value);
    QFETCH(QString, condition);
    QFETCH(bool, visible);
    FormSettings settings;
    MetaDescriptor descriptor;
    descriptor.set(&settings);
    AbstractMetaDescription *source = descriptor.propertyByName(QStringLiteral("Name"));
    source->setValue(value);
    QCOMPARE(PropertyListControl::checkVisibility(source, condition), visible);
}

void PropertyFormTest::categoriesAreLabelledAndBoundOnesFollowTheirSource()
{
    FormSettings settings;
    PropertyListControl form(&settings);
    QStringList labels;
    const auto found = form.findChildren<QLabel *>(QStringLiteral("propertyCategoryLabel"));
    for (const QLabel *label : found)
        labels << (label->isHidden() ? QString() : label->text());
    labels.removeAll(QString());
    labels.sort();
    QCOMPARE(labels, (QStringList {"Main", "Other"})); // "Extras" has nothing visible yet

    PropertyTabWidget tabs(&settings);
    QTabWidget *widget = tabs.getTabWidget();
    const int extras = 1; // categories in the order of their first property's name
    QCOMPARE(tabs.tabCount(), 3);
    QCOMPARE(widget->tabText(extras), QStringLiteral("Extras"));
    QVERIFY(widget->isTabVisible(0) && !widget->isTabVisible(extras));
    PropertyListControl category(&settings, QStringLiteral("Extras"),
                                 PropertyListControl::ViewMode_Category);
    const BasePropertyView *extra = category.getWidgetInfo("Extra").view;
    QVERIFY(!extra->isHidden()); // in this mode the rules wait for their switch
    category.setManageCategoryVisibility(true);
    QVERIFY(extra->isHidden());

    settings.setProperty("Flag", true);
    QVERIFY(widget->isTabVisible(extras));
    QVERIFY(!extra->isHidden() && category.visibleProperties() == 1);
    QVERIFY(!form.getWidgetInfo("Extra").view->isHidden());
}

// The page is live: every input is in Settings.xml at once, ComPort shows only without the
// search, and the blue mark of a changed value goes once the default is typed again.
void PropertyFormTest::settingsPageStoresAtOnceAndMarksChanges()
{
    const PropertyWidgetInfo port =
        m_page->findChild<PropertyListControl *>()->getWidgetInfo("ComPort");
    QVERIFY(port.header->isHidden() && port.view->isHidden());
    auto *autoSearch = qobject_cast<QCheckBox *>(view("AutoSearch")->getEditor());
    autoSearch->click();
    QVERIFY(m_data.storedSettings().contains("<AutoSearch>false</AutoSearch>"));
    QVERIFY(!port.header->isHidden() && !port.view->isHidden());
    autoSearch->click();
    QVERIFY(port.header->isHidden() && port.view->isHidden());

    BasePropertyView *timeout = view("DeviceSearchTimeout");
    const QPushButton *mark = timeout->defaultButton();
    QVERIFY(mark->styleSheet().contains(QLatin1String("transparent")));
    auto *number = qobject_cast<QSpinBox *>(timeout->getEditor());
    number->selectAll();
    QTest::keyClicks(number, QStringLiteral("9"));
    QVERIFY(m_data.storedSettings().contains("<DeviceSearchTimeout>9</DeviceSearchTimeout>"));
    QTRY_VERIFY(mark->styleSheet().contains(QLatin1String("#39F")));
    number->selectAll();
    QTest::keyClicks(number, QStringLiteral("5"));
    QTRY_VERIFY(mark->styleSheet().contains(QLatin1String("transparent")));
    m_model->settings()->setDeviceSearchTimeout(12); // a change from elsewhere shows as well
    QTRY_COMPARE(number->value(), 12);
    QVERIFY(mark->styleSheet().contains(QLatin1String("#39F")));
}

// The settings class with a language keeps the one stored in its file; only an empty value
// takes the system's or the first.
void PropertyFormTest::storedLanguageIsKept()
{
    const QString path = m_data.root() + QStringLiteral("Language.xml");
    QVERIFY(QDir().mkpath(m_data.root()));
    QVERIFY(TestFiles::write(path,
                             "<SettingsWithLanguage><Language>xx_XX</Language>"
                             "</SettingsWithLanguage>"));
    SettingsWithLanguage settings(path, false, {"yy_YY", "xx_XX"});
    QVERIFY(settings.reload());
    QCOMPARE(settings.property("Language").toString(), QStringLiteral("xx_XX"));
}

QTEST_MAIN(PropertyFormTest)
#include "tst_propertyform.moc"
