#include "ReportTexts.h"

#include "data/TarveloCommon.h"

#include <QCoreApplication>
#include <QMetaEnum>

namespace {
const char *const Generic = "Generic";

const char *const HeaderSources[] = {
    QT_TRANSLATE_NOOP("Generic", "№"),           QT_TRANSLATE_NOOP("Generic", "Этап"),
    QT_TRANSLATE_NOOP("Generic", "Реакции"),     QT_TRANSLATE_NOOP("Generic", "Правильные"),
    QT_TRANSLATE_NOOP("Generic", "Запоздалые"),  QT_TRANSLATE_NOOP("Generic", "Ошибочные"),
    QT_TRANSLATE_NOOP("Generic", "Пропущенные"), QT_TRANSLATE_NOOP("Generic", "M реакции"),
    QT_TRANSLATE_NOOP("Generic", "D реакции"),   QT_TRANSLATE_NOOP("Generic", "Ступень скор."),
    QT_TRANSLATE_NOOP("Generic", "Переход"),
};

const char *const StatisticSources[] = {
    QT_TRANSLATE_NOOP("Generic", "M"),
    QT_TRANSLATE_NOOP("Generic", "D"),
    QT_TRANSLATE_NOOP("Generic", "CKO"),
};

QString generic(const char *source)
{
    return QCoreApplication::translate(Generic, source);
}

ReportTexts make()
{
    ReportTexts texts;
    texts.matrixHeading = QCoreApplication::translate("Generic", "Требуемая реакция");
    texts.matrixRowLabel = QCoreApplication::translate("Generic", "Значение реакции");
    texts.stageWord = QCoreApplication::translate("Generic", "Этап");
    texts.sessionWord = QCoreApplication::translate("Generic", "Сессия");
    texts.finishLine = QCoreApplication::translate("Generic", "Завершено");
    for (const char *source : HeaderSources)
        texts.headers << generic(source);
    for (const char *source : StatisticSources)
        texts.statisticLabels << generic(source);

    // The enumeration's keys are the translation sources, so the list can't drift from it.
    const QMetaEnum buttons = QMetaEnum::fromType<TarveloCommon::Button>();
    for (int button = TarveloCommon::BTN_Green; button < TarveloCommon::BTN_None; ++button)
        texts.buttonNames << generic(buttons.valueToKey(button));

    texts.fileFilters = QStringList {
        QCoreApplication::translate("TarveloSessionWidget", "XLSX") + QStringLiteral(" (*.xlsx)"),
        QCoreApplication::translate("TarveloSessionWidget", "CSV") + QStringLiteral(" (*.csv)"),
        QCoreApplication::translate("TarveloSessionWidget", "PDF") + QStringLiteral(" (*.pdf)"),
    };
    return texts;
}
} // namespace

const ReportTexts &ReportTexts::instance()
{
    static const ReportTexts texts = make();
    return texts;
}
