<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="ru_RU">
<context>
    <name>AddUserButton</name>
    <message>
        <source>Добавить респондента</source>
        <translation>Добавить респондента</translation>
    </message>
</context>
<context>
    <name>BasePropertyView</name>
    <message>
        <source>Set default to</source>
        <translation>Установить значение по умолчанию</translation>
    </message>
</context>
<context>
    <name>ComUpdaterWidget</name>
    <message>
        <source>Update firmware</source>
        <translation>Обновить прошивку</translation>
    </message>
    <message>
        <source>Open firmware file</source>
        <translation>Открыть файл прошивки</translation>
    </message>
    <message>
        <source>Valid firmware</source>
        <translation>Валидная прошивка</translation>
    </message>
    <message>
        <source>This is no readable ZIP archive.</source>
        <translation>Это не читаемый ZIP-архив.</translation>
    </message>
    <message>
        <source>Refused: &quot;%1&quot; would be written outside the package&apos;s folder.</source>
        <translation>Отклонено: «%1» был бы записан вне папки пакета.</translation>
    </message>
    <message>
        <source>There were errors while uploading firmware</source>
        <translation>При обновлении прошивки возникли ошибки</translation>
    </message>
    <message>
        <source>Done!</source>
        <translation>Готово!</translation>
    </message>
</context>
<context>
    <name>CurrentUserComboBox</name>
    <message>
        <source>Не выбран</source>
        <translation>Не выбран</translation>
    </message>
</context>
<context>
    <name>DeleteUpDownWidget</name>
    <message>
        <source>Удалить</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>Переместить вверх</source>
        <translation>Переместить вверх</translation>
    </message>
    <message>
        <source>Переместить вниз</source>
        <translation>Переместить вниз</translation>
    </message>
</context>
<context>
    <name>ExportBehaviorOption</name>
    <message>
        <source>OnExport_OpenFile</source>
        <extracomment>Открыть файл / Open file</extracomment>
        <translation>Открыть файл</translation>
    </message>
    <message>
        <source>OnExport_OpenFolder</source>
        <extracomment>Открыть папку / Open folder</extracomment>
        <translation>Открыть папку</translation>
    </message>
    <message>
        <source>OnExport_DoNothing</source>
        <extracomment>Ничего не делать / Do nothing</extracomment>
        <translation>Ничего не делать</translation>
    </message>
</context>
<context>
    <name>FirmwareFlasher</name>
    <message>
        <source>The tool said nothing for %1 s and was stopped.</source>
        <translation>Программа молчала %1 с и была остановлена.</translation>
    </message>
</context>
<context>
    <name>Genders</name>
    <message>
        <source>Undefined</source>
        <extracomment>Не выбран / Undefined</extracomment>
        <translation>Не выбран</translation>
    </message>
    <message>
        <source>Male</source>
        <extracomment>Мужской / Male</extracomment>
        <translation>Мужской</translation>
    </message>
    <message>
        <source>Female</source>
        <extracomment>Женский / Female</extracomment>
        <translation>Женский</translation>
    </message>
</context>
<context>
    <name>Generic</name>
    <message>
        <source>BTN_Green</source>
        <extracomment>зел. / green</extracomment>
        <translation>зел.</translation>
    </message>
    <message>
        <source>BTN_Yellow</source>
        <extracomment>жёлт. / yellow</extracomment>
        <translation>жёлт.</translation>
    </message>
    <message>
        <source>BTN_White</source>
        <extracomment>бел. / white</extracomment>
        <translation>бел.</translation>
    </message>
    <message>
        <source>BTN_Red</source>
        <extracomment>кр. / red</extracomment>
        <translation>кр.</translation>
    </message>
    <message>
        <source>BTN_Blue</source>
        <extracomment>син. / blue</extracomment>
        <translation>син.</translation>
    </message>
    <message>
        <source>BTN_Left</source>
        <extracomment>н.звук / l.tone</extracomment>
        <translation>н.звук</translation>
    </message>
    <message>
        <source>BTN_Right</source>
        <extracomment>в.звук / h.tone</extracomment>
        <translation>в.звук</translation>
    </message>
    <message>
        <source>BTN_Pedal_Left</source>
        <extracomment>л.нога / l.foot</extracomment>
        <translation>л.нога</translation>
    </message>
    <message>
        <source>BTN_Pedal_Right</source>
        <extracomment>п.нога / r.foot</extracomment>
        <translation>п.нога</translation>
    </message>
    <message>
        <source>AutoSearch</source>
        <extracomment>Авто поиск устройства / Auto search device</extracomment>
        <translation>Авто поиск устройства</translation>
    </message>
    <message>
        <source>ComPort</source>
        <extracomment>COM-порт / COM port</extracomment>
        <translation>COM-порт</translation>
    </message>
    <message>
        <source>DeviceSearchTimeout</source>
        <extracomment>Интервал поиска устройств / Device search interval</extracomment>
        <translation>Интервал поиска устройств</translation>
    </message>
    <message>
        <source>StartMaximized</source>
        <extracomment>Запуск на полный экран / Start maximized</extracomment>
        <translation>Запуск на полный экран</translation>
    </message>
    <message>
        <source>DefaultToneLo</source>
        <extracomment>Низкий тон / Low tone</extracomment>
        <translation>Низкий тон</translation>
    </message>
    <message>
        <source>DefaultToneHi</source>
        <extracomment>Высокий тон / High tone</extracomment>
        <translation>Высокий тон</translation>
    </message>
    <message>
        <source>DefaultFullTimeDuration</source>
        <extracomment>Полное время шагов / Full step time</extracomment>
        <translation>Полное время шагов</translation>
    </message>
    <message>
        <source>stop</source>
        <extracomment>Остановить / Stop</extracomment>
        <translation>Остановить</translation>
    </message>
    <message>
        <source>sm2</source>
        <extracomment>-2 этапа / -2 stages</extracomment>
        <translation>-2 этапа</translation>
    </message>
    <message>
        <source>sm1</source>
        <extracomment>-1 этап / -1 stage</extracomment>
        <translation>-1 этап</translation>
    </message>
    <message>
        <source>s0</source>
        <extracomment>Повтор этапа / Repeat stage</extracomment>
        <translation>Повтор этапа</translation>
    </message>
    <message>
        <source>sp1</source>
        <extracomment>+1 этап / +1 stage</extracomment>
        <translation>+1 этап</translation>
    </message>
    <message>
        <source>sp2</source>
        <extracomment>+2 этапа / +2 stages</extracomment>
        <translation>+2 этапа</translation>
    </message>
    <message>
        <source>maxRepeats</source>
        <extracomment>Макс. повторов / Max repeats</extracomment>
        <translation>Макс. повторов</translation>
    </message>
    <message>
        <source>ExportBehavior</source>
        <extracomment>При экспорте / On export</extracomment>
        <translation>При экспорте</translation>
    </message>
    <message>
        <source>Common</source>
        <extracomment>Общее / Common</extracomment>
        <translation>Общее</translation>
    </message>
    <message>
        <source>Defaults</source>
        <extracomment>Значения по умолчанию / Default settings</extracomment>
        <translation>Значения по умолчанию</translation>
    </message>
    <message>
        <source>err.</source>
        <extracomment>ош. / err.</extracomment>
        <translation>ош.</translation>
    </message>
    <message>
        <source> Hz</source>
        <extracomment>&quot; Гц&quot; / &quot; Hz&quot;</extracomment>
        <translation> Гц</translation>
    </message>
    <message>
        <source> s</source>
        <extracomment>&quot; с&quot; / &quot; s&quot;</extracomment>
        <translation> с</translation>
    </message>
    <message>
        <source>s</source>
        <extracomment>с / s</extracomment>
        <translation>с</translation>
    </message>
    <message>
        <source>COM</source>
        <extracomment>COM / COM</extracomment>
        <translation>COM</translation>
    </message>
    <message>
        <source>LastName</source>
        <extracomment>Фамилия / Last name</extracomment>
        <translation>Фамилия</translation>
    </message>
    <message>
        <source>FirstName</source>
        <extracomment>Имя / First name</extracomment>
        <translation>Имя</translation>
    </message>
    <message>
        <source>MiddleName</source>
        <extracomment>Отчество / Middle name</extracomment>
        <translation>Отчество</translation>
    </message>
    <message>
        <source>DOBYear</source>
        <extracomment>Год / Year</extracomment>
        <translation>Год</translation>
    </message>
    <message>
        <source>DOBMonth</source>
        <extracomment>Месяц / Month</extracomment>
        <translation>Месяц</translation>
    </message>
    <message>
        <source>DOBDay</source>
        <extracomment>День / Day</extracomment>
        <translation>День</translation>
    </message>
    <message>
        <source>Gender</source>
        <extracomment>Пол / Gender</extracomment>
        <translation>Пол</translation>
    </message>
    <message>
        <source>GUID</source>
        <extracomment>Идентификатор / GUID</extracomment>
        <translation>Идентификатор</translation>
    </message>
    <message>
        <source>Comment</source>
        <extracomment>Комментарий / Comment</extracomment>
        <translation>Комментарий</translation>
    </message>
    <message>
        <source>№</source>
        <translation>№</translation>
    </message>
    <message>
        <source>Этап</source>
        <translation>Этап</translation>
    </message>
    <message>
        <source>Реакции</source>
        <translation>Реакции</translation>
    </message>
    <message>
        <source>Правильные</source>
        <translation>Правильные</translation>
    </message>
    <message>
        <source>Запоздалые</source>
        <translation>Запоздалые</translation>
    </message>
    <message>
        <source>Ошибочные</source>
        <translation>Ошибочные</translation>
    </message>
    <message>
        <source>Пропущенные</source>
        <translation>Пропущенные</translation>
    </message>
    <message>
        <source>M реакции</source>
        <translation>M реакции</translation>
    </message>
    <message>
        <source>D реакции</source>
        <translation>D реакции</translation>
    </message>
    <message>
        <source>Ступень скор.</source>
        <translation>Ступень скор.</translation>
    </message>
    <message>
        <source>Переход</source>
        <translation>Переход</translation>
    </message>
    <message>
        <source>M</source>
        <translation>M</translation>
    </message>
    <message>
        <source>D</source>
        <translation>D</translation>
    </message>
    <message>
        <source>CKO</source>
        <translation>CKO</translation>
    </message>
    <message>
        <source>Требуемая реакция</source>
        <translation>Требуемая реакция</translation>
    </message>
    <message>
        <source>Значение реакции</source>
        <translation>Значение реакции</translation>
    </message>
    <message>
        <source>Сессия</source>
        <translation>Сессия</translation>
    </message>
    <message>
        <source>Завершено</source>
        <translation>Завершено</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Да</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Нет</translation>
    </message>
    <message>
        <source>ms</source>
        <translation>мс</translation>
    </message>
    <message>
        <source>Остановить</source>
        <translation>Остановить</translation>
    </message>
    <message>
        <source>-2 этапа</source>
        <translation>-2 этапа</translation>
    </message>
    <message>
        <source>-1 этап</source>
        <translation>-1 этап</translation>
    </message>
    <message>
        <source>Повтор этапа</source>
        <translation>Повтор этапа</translation>
    </message>
    <message>
        <source>+1 этап</source>
        <translation>+1 этап</translation>
    </message>
    <message>
        <source>+2 этапа</source>
        <translation>+2 этапа</translation>
    </message>
    <message>
        <source>Макс. повторов</source>
        <translation>Макс. повторов</translation>
    </message>
    <message>
        <source>Hz</source>
        <translation>Гц</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Другое</translation>
    </message>
    <message>
        <source>Не удалось открыть &quot;%1&quot;: в системе не нашлось программы для этого.</source>
        <translation>Не удалось открыть &quot;%1&quot;: в системе не нашлось программы для этого.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Тарвело</source>
        <translation>Тарвело</translation>
    </message>
    <message>
        <source>Сценарии</source>
        <translation>Сценарии</translation>
    </message>
    <message>
        <source>Сессия</source>
        <translation>Сессия</translation>
    </message>
    <message>
        <source>Респонденты</source>
        <translation>Респонденты</translation>
    </message>
    <message>
        <source>Устройство</source>
        <translation>Устройство</translation>
    </message>
    <message>
        <source>Настройки</source>
        <translation>Настройки</translation>
    </message>
    <message>
        <source>New version</source>
        <translation>Новая версия</translation>
    </message>
    <message>
        <source>Папка данных &quot;%1&quot; недоступна: %2. Сценарии, сессии и настройки не сохраняются, пока она недоступна.</source>
        <translation>Папка данных &quot;%1&quot; недоступна: %2. Сценарии, сессии и настройки не сохраняются, пока она недоступна.</translation>
    </message>
    <message>
        <source>Идёт сессия</source>
        <translation>Идёт сессия</translation>
    </message>
    <message>
        <source>Сессия ещё идёт. Прервать её и закрыть программу? Записанные этапы сохраняются.</source>
        <translation>Сессия ещё идёт. Прервать её и закрыть программу? Записанные этапы сохраняются.</translation>
    </message>
    <message>
        <source>Прервать и закрыть</source>
        <translation>Прервать и закрыть</translation>
    </message>
    <message>
        <source>Продолжить сессию</source>
        <translation>Продолжить сессию</translation>
    </message>
    <message>
        <source>Не удалось записать файл &quot;%1&quot;: %2</source>
        <translation>Не удалось записать файл &quot;%1&quot;: %2</translation>
    </message>
</context>
<context>
    <name>NewVersionChecker</name>
    <message>
        <source>Click to download new version</source>
        <translation>Нажмите для загрузки новой версии </translation>
    </message>
</context>
<context>
    <name>PageDatabase</name>
    <message>
        <source>Редактирвоать респондента</source>
        <translation>Редактирвоать респондента</translation>
    </message>
    <message>
        <source>Респонденты</source>
        <translation>Респонденты</translation>
    </message>
    <message>
        <source>Сессии</source>
        <translation>Сессии</translation>
    </message>
    <message>
        <source>Неизвестный</source>
        <translation>Неизвестный</translation>
    </message>
    <message>
        <source>Удалить сессию</source>
        <translation>Удалить сессию</translation>
    </message>
    <message>
        <source>Удаление сессии</source>
        <translation>Удаление сессии</translation>
    </message>
    <message>
        <source>Действительно удалить результаты этой сессии?</source>
        <translation>Действительно удалить результаты этой сессии?</translation>
    </message>
    <message>
        <source>Ошибка</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Невозможно удалить сессию</source>
        <translation>Невозможно удалить сессию</translation>
    </message>
    <message>
        <source>Невозможно перенести папку респондента</source>
        <translation>Невозможно перенести папку респондента</translation>
    </message>
    <message>
        <source>Невозможно удалить папку респондента</source>
        <translation>Невозможно удалить папку респондента</translation>
    </message>
</context>
<context>
    <name>PageScript</name>
    <message>
        <source>Удалить сценарий</source>
        <translation>Удалить сценарий</translation>
    </message>
    <message>
        <source>Редактировать сценарий</source>
        <translation>Редактировать сценарий</translation>
    </message>
    <message>
        <source>Создать сценарий</source>
        <translation>Создать сценарий</translation>
    </message>
    <message>
        <source>Сохранить</source>
        <translation>Сохранить</translation>
    </message>
    <message>
        <source>Сохранить изменения</source>
        <translation>Сохранить изменения</translation>
    </message>
    <message>
        <source>Отмена</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Отменить изменения</source>
        <translation>Отменить изменения</translation>
    </message>
    <message>
        <source>Сценарий редактируется: сохраните или отмените изменения</source>
        <translation>Сценарий редактируется: сохраните или отмените изменения</translation>
    </message>
    <message>
        <source>Несохранённые изменения</source>
        <translation>Несохранённые изменения</translation>
    </message>
    <message>
        <source>Сохранить изменения в сценарии &quot;%1&quot;?</source>
        <translation>Сохранить изменения в сценарии &quot;%1&quot;?</translation>
    </message>
    <message>
        <source>Не сохранять</source>
        <translation>Не сохранять</translation>
    </message>
    <message>
        <source>Удаление сценария</source>
        <translation>Удаление сценария</translation>
    </message>
    <message>
        <source>Сохранение сценария</source>
        <translation>Сохранение сценария</translation>
    </message>
    <message>
        <source>Создание сценария</source>
        <translation>Создание сценария</translation>
    </message>
</context>
<context>
    <name>PlayScriptStopSessionButton</name>
    <message>
        <source>Прервать сессию</source>
        <translation>Прервать сессию</translation>
    </message>
    <message>
        <source>Воспроизвести сценарий</source>
        <translation>Воспроизвести сценарий</translation>
    </message>
    <message>
        <source>Сценарий не выбран</source>
        <translation>Сценарий не выбран</translation>
    </message>
    <message>
        <source>В сценарии нет ни одного шага</source>
        <translation>В сценарии нет ни одного шага</translation>
    </message>
    <message>
        <source>Устройство не подключено</source>
        <translation>Устройство не подключено</translation>
    </message>
    <message>
        <source>Прервать сессию? Записанные этапы сохраняются.</source>
        <translation>Прервать сессию? Записанные этапы сохраняются.</translation>
    </message>
    <message>
        <source>Прервать</source>
        <translation>Прервать</translation>
    </message>
    <message>
        <source>Продолжить</source>
        <translation>Продолжить</translation>
    </message>
</context>
<context>
    <name>ScriptCreatorWidget</name>
    <message>
        <source>Создание сценария</source>
        <translation>Создание сценария</translation>
    </message>
    <message>
        <source>Создание этапа</source>
        <translation>Создание этапа</translation>
    </message>
    <message>
        <source>Название</source>
        <translation>Название</translation>
    </message>
    <message>
        <source>Стимулы</source>
        <translation>Стимулы</translation>
    </message>
    <message>
        <source>Этапы</source>
        <translation>Этапы</translation>
    </message>
    <message>
        <source>Создать</source>
        <translation>Создать</translation>
    </message>
    <message>
        <source>Отмена</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Для двух и более шагов в этапе нужны хотя бы два стимула</source>
        <translation>Для двух и более шагов в этапе нужны хотя бы два стимула</translation>
    </message>
    <message>
        <source>Шаги</source>
        <translation>Шаги</translation>
    </message>
    <message>
        <source>Количество шагов в этапе</source>
        <translation>Количество шагов в этапе</translation>
    </message>
    <message>
        <source>Длительность стимула, мс</source>
        <translation>Длительность стимула, мс</translation>
    </message>
    <message>
        <source>Случайное приращение к длительности (мс), не более указанного значения</source>
        <translation>Случайное приращение к длительности (мс), не более указанного значения</translation>
    </message>
    <message>
        <source>Длительность задержки после стимула (мс)</source>
        <translation>Длительность задержки после стимула (мс)</translation>
    </message>
    <message>
        <source>Случайное приращение к задержке (мс), не более указанного значения</source>
        <translation>Случайное приращение к задержке (мс), не более указанного значения</translation>
    </message>
</context>
<context>
    <name>SessionStatusLine</name>
    <message>
        <source>Связь с устройством потеряна</source>
        <translation>Связь с устройством потеряна</translation>
    </message>
    <message>
        <source>Результаты не записываются</source>
        <translation>Результаты не записываются</translation>
    </message>
    <message>
        <source>Сохранено:</source>
        <translation>Сохранено:</translation>
    </message>
    <message>
        <source>Не сохранено:</source>
        <translation>Не сохранено:</translation>
    </message>
</context>
<context>
    <name>SettingsWithLanguage</name>
    <message>
        <source>Language will be changed on program restart</source>
        <translation>Язык сменится после перезапуска программы</translation>
    </message>
</context>
<context>
    <name>SpecialPropertyView</name>
    <message>
        <source>Любой файл</source>
        <translation>Любой файл</translation>
    </message>
</context>
<context>
    <name>Stimulus</name>
    <message>
        <source>LED_TOP_Green</source>
        <extracomment>Зелёный 1 / Green 1</extracomment>
        <translation>Зелёный 1</translation>
    </message>
    <message>
        <source>LED_TOP_White</source>
        <extracomment>Белый 1 / White 1</extracomment>
        <translation>Белый 1</translation>
    </message>
    <message>
        <source>LED_TOP_Blue</source>
        <extracomment>Синий 1 / Blue 1</extracomment>
        <translation>Синий 1</translation>
    </message>
    <message>
        <source>LED_TOP_Red</source>
        <extracomment>Красный 1 / Red1</extracomment>
        <translation>Красный 1</translation>
    </message>
    <message>
        <source>LED_TOP_Yellow</source>
        <extracomment>Жёлтый 1 / Yellow 1</extracomment>
        <translation>Жёлтый 1</translation>
    </message>
    <message>
        <source>LED_MID_Blue</source>
        <extracomment>Синий 2 / Blue 2</extracomment>
        <translation>Синий 2</translation>
    </message>
    <message>
        <source>LED_MID_Red</source>
        <extracomment>Красный 2 / Red 2</extracomment>
        <translation>Красный 2</translation>
    </message>
    <message>
        <source>LED_MID_Yellow</source>
        <extracomment>Жёлтый 2 / Yellow 2</extracomment>
        <translation>Жёлтый 2</translation>
    </message>
    <message>
        <source>LED_MID_White</source>
        <extracomment>Белый 2 / White 2</extracomment>
        <translation>Белый 2</translation>
    </message>
    <message>
        <source>LED_MID_Green</source>
        <extracomment>Зелёный 2 / Green 2</extracomment>
        <translation>Зелёный 2</translation>
    </message>
    <message>
        <source>LED_BOT_WhiteLeft</source>
        <extracomment>Левый белый (педаль) / Left white(pedal)</extracomment>
        <translation>Левый белый (педаль)</translation>
    </message>
    <message>
        <source>LED_BOT_WhiteRight</source>
        <extracomment>Правый белый (педаль) / Right white (pedal)</extracomment>
        <translation>Правый белый (педаль)</translation>
    </message>
    <message>
        <source>AUDIO_Left_Lo</source>
        <extracomment>Низкий звук слева / Low tone left</extracomment>
        <translation>Низкий звук слева</translation>
    </message>
    <message>
        <source>AUDIO_Left_Hi</source>
        <extracomment>Высокий звук слева / High tone left</extracomment>
        <translation>Высокий звук слева</translation>
    </message>
    <message>
        <source>AUDIO_Right_Lo</source>
        <extracomment>Низкий звук справа / Low tone right</extracomment>
        <translation>Низкий звук справа</translation>
    </message>
    <message>
        <source>AUDIO_Right_Hi</source>
        <extracomment>Высокий звук справа / High tone right</extracomment>
        <translation>Высокий звук справа</translation>
    </message>
    <message>
        <source>AUDIO_Both_Lo</source>
        <extracomment>Низкий звук стерео / Low tone stereo</extracomment>
        <translation>Низкий звук стерео</translation>
    </message>
    <message>
        <source>AUDIO_Both_Hi</source>
        <extracomment>Высокий звук стерео / High tone stereo</extracomment>
        <translation>Высокий звук стерео</translation>
    </message>
</context>
<context>
    <name>TarveloModel</name>
    <message>
        <source>Имя сценария не может быть пустым</source>
        <translation>Имя сценария не может быть пустым</translation>
    </message>
    <message>
        <source>Такое имя сценария уже используется</source>
        <translation>Такое имя сценария уже используется</translation>
    </message>
</context>
<context>
    <name>TarveloScriptEditor</name>
    <message>
        <source>Полное время шагов</source>
        <translation>Полное время шагов</translation>
    </message>
    <message>
        <source>Если активировано, то стимул не прекращается после нажатия кнопки/педали</source>
        <translation>Если активировано, то стимул не прекращается после нажатия кнопки/педали</translation>
    </message>
    <message>
        <source>Название</source>
        <translation>Название</translation>
    </message>
    <message>
        <source>Низкий тон</source>
        <translation>Низкий тон</translation>
    </message>
    <message>
        <source>Описание</source>
        <translation>Описание</translation>
    </message>
    <message>
        <source>Высокий тон</source>
        <translation>Высокий тон</translation>
    </message>
    <message>
        <source>Сообщение</source>
        <translation>Сообщение</translation>
    </message>
    <message>
        <source>Этапы</source>
        <translation>Этапы</translation>
    </message>
    <message>
        <source>Добавить этап</source>
        <translation>Добавить этап</translation>
    </message>
    <message>
        <source>Удалить этап</source>
        <translation>Удалить этап</translation>
    </message>
    <message>
        <source>Переходы</source>
        <translation>Переходы</translation>
    </message>
    <message>
        <source>Количество ошибок для активации перехода в конце этапа, пусто - действие не применяется</source>
        <translation>Количество ошибок для активации перехода в конце этапа, пусто - действие не применяется</translation>
    </message>
    <message>
        <source>Перейти к этапу </source>
        <translation>Перейти к этапу </translation>
    </message>
    <message>
        <source>Удаление этапа</source>
        <translation>Удаление этапа</translation>
    </message>
</context>
<context>
    <name>TarveloSessionWidget</name>
    <message>
        <source>XLSX</source>
        <translation>XLSX</translation>
    </message>
    <message>
        <source>CSV</source>
        <translation>CSV</translation>
    </message>
    <message>
        <source>PDF</source>
        <translation>PDF</translation>
    </message>
    <message>
        <source>Сессия</source>
        <translation>Сессия</translation>
    </message>
    <message>
        <source>Стоп</source>
        <translation>Стоп</translation>
    </message>
    <message>
        <source>Макс.повторов</source>
        <translation>Макс.повторов</translation>
    </message>
    <message>
        <source>Повтор</source>
        <translation>Повтор</translation>
    </message>
    <message>
        <source>Не записывать результаты</source>
        <translation>Не записывать результаты</translation>
    </message>
    <message>
        <source>Экспорт</source>
        <translation>Экспорт</translation>
    </message>
    <message>
        <source>Ошибка сохранения</source>
        <translation>Ошибка сохранения</translation>
    </message>
</context>
<context>
    <name>TarveloSettingsWidget</name>
    <message>
        <source>Device</source>
        <translation>Устройство</translation>
    </message>
    <message>
        <source>SN</source>
        <translation>SN</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Версия</translation>
    </message>
    <message>
        <source>Invert audio</source>
        <translation>Инвертировать аудио</translation>
    </message>
    <message>
        <source>Invert pedals</source>
        <translation>Инвертировать педали</translation>
    </message>
    <message>
        <source>Flash all leds on start</source>
        <translation>Мигать всеми лампочками</translation>
    </message>
    <message>
        <source>Flash</source>
        <translation>Обновить прошивку</translation>
    </message>
</context>
<context>
    <name>TarveloStageEditor</name>
    <message>
        <source>Добавить шаг</source>
        <translation>Добавить шаг</translation>
    </message>
    <message>
        <source>Стимул</source>
        <translation>Стимул</translation>
    </message>
    <message>
        <source>Длительность стимула</source>
        <translation>Длительность стимула</translation>
    </message>
    <message>
        <source>Задержка после стимулом</source>
        <translation>Задержка после стимулом</translation>
    </message>
</context>
<context>
    <name>TarveloStatusBar</name>
    <message>
        <source>Тарвело не найден</source>
        <translation>Тарвело не найден</translation>
    </message>
    <message>
        <source>Тарвело подключен</source>
        <translation>Тарвело подключен</translation>
    </message>
    <message>
        <source>Сценарий не загружен: связь с устройством прервалась</source>
        <translation>Сценарий не загружен: связь с устройством прервалась</translation>
    </message>
    <message>
        <source>Экспортировано: %1</source>
        <translation>Экспортировано: %1</translation>
    </message>
    <message>
        <source>Показать в папке</source>
        <translation>Показать в папке</translation>
    </message>
    <message>
        <source>Порт %1 недоступен: его занимает другая программа.</source>
        <translation>Порт %1 недоступен: его занимает другая программа.</translation>
    </message>
    <message>
        <source>Нет прав на порт %1: добавьте пользователя в группу «%2» и войдите в систему заново.</source>
        <translation>Нет прав на порт %1: добавьте пользователя в группу «%2» и войдите в систему заново.</translation>
    </message>
</context>
<context>
    <name>UserEditor</name>
    <message>
        <source>Редактирование респондента</source>
        <translation>Редактирование респондента</translation>
    </message>
    <message>
        <source>Создание респондента</source>
        <translation>Создание респондента</translation>
    </message>
    <message>
        <source>Удалить</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>Изменить</source>
        <translation>Изменить</translation>
    </message>
    <message>
        <source>Создать</source>
        <translation>Создать</translation>
    </message>
    <message>
        <source>Отмена</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Удаление</source>
        <translation>Удаление</translation>
    </message>
    <message>
        <source>Удалить этого респондента со всеми сессиями?</source>
        <translation>Удалить этого респондента со всеми сессиями?</translation>
    </message>
</context>
</TS>
