<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="ru_RU">
<context>
    <name>AddUserButton</name>
    <message>
        <source>Добавить респондента</source>
        <translation>Add subject</translation>
    </message>
</context>
<context>
    <name>BasePropertyView</name>
    <message>
        <source>Set default to</source>
        <translation>Set default to</translation>
    </message>
</context>
<context>
    <name>ComUpdaterWidget</name>
    <message>
        <source>Update firmware</source>
        <translation>Update firmware</translation>
    </message>
    <message>
        <source>Open firmware file</source>
        <translation>Open firmware file</translation>
    </message>
    <message>
        <source>Valid firmware</source>
        <translation>Valid firmware</translation>
    </message>
    <message>
        <source>This is no readable ZIP archive.</source>
        <translation>This is no readable ZIP archive.</translation>
    </message>
    <message>
        <source>Refused: &quot;%1&quot; would be written outside the package&apos;s folder.</source>
        <translation>Refused: &quot;%1&quot; would be written outside the package&apos;s folder.</translation>
    </message>
    <message>
        <source>There were errors while uploading firmware</source>
        <translation>There were errors while uploading firmware</translation>
    </message>
    <message>
        <source>Done!</source>
        <translation>Done!</translation>
    </message>
</context>
<context>
    <name>CurrentUserComboBox</name>
    <message>
        <source>Не выбран</source>
        <translation>Not selected</translation>
    </message>
</context>
<context>
    <name>DeleteUpDownWidget</name>
    <message>
        <source>Удалить</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>Переместить вверх</source>
        <translation>Move up</translation>
    </message>
    <message>
        <source>Переместить вниз</source>
        <translation>Move down</translation>
    </message>
</context>
<context>
    <name>ExportBehaviorOption</name>
    <message>
        <source>OnExport_OpenFile</source>
        <extracomment>Открыть файл / Open file</extracomment>
        <translation>Open file</translation>
    </message>
    <message>
        <source>OnExport_OpenFolder</source>
        <extracomment>Открыть папку / Open folder</extracomment>
        <translation>Open folder</translation>
    </message>
    <message>
        <source>OnExport_DoNothing</source>
        <extracomment>Ничего не делать / Do nothing</extracomment>
        <translation>Do nothing</translation>
    </message>
</context>
<context>
    <name>FirmwareFlasher</name>
    <message>
        <source>The tool said nothing for %1 s and was stopped.</source>
        <translation>The tool said nothing for %1 s and was stopped.</translation>
    </message>
</context>
<context>
    <name>Genders</name>
    <message>
        <source>Undefined</source>
        <extracomment>Не выбран / Undefined</extracomment>
        <translation>Undefined</translation>
    </message>
    <message>
        <source>Male</source>
        <extracomment>Мужской / Male</extracomment>
        <translation>Male</translation>
    </message>
    <message>
        <source>Female</source>
        <extracomment>Женский / Female</extracomment>
        <translation>Female</translation>
    </message>
</context>
<context>
    <name>Generic</name>
    <message>
        <source>BTN_Green</source>
        <extracomment>зел. / green</extracomment>
        <translation>green</translation>
    </message>
    <message>
        <source>BTN_Yellow</source>
        <extracomment>жёлт. / yellow</extracomment>
        <translation>yellow</translation>
    </message>
    <message>
        <source>BTN_White</source>
        <extracomment>бел. / white</extracomment>
        <translation>white</translation>
    </message>
    <message>
        <source>BTN_Red</source>
        <extracomment>кр. / red</extracomment>
        <translation>red</translation>
    </message>
    <message>
        <source>BTN_Blue</source>
        <extracomment>син. / blue</extracomment>
        <translation>blue</translation>
    </message>
    <message>
        <source>BTN_Left</source>
        <extracomment>н.звук / l.tone</extracomment>
        <translation>l.tone</translation>
    </message>
    <message>
        <source>BTN_Right</source>
        <extracomment>в.звук / h.tone</extracomment>
        <translation>h.tone</translation>
    </message>
    <message>
        <source>BTN_Pedal_Left</source>
        <extracomment>л.нога / l.foot</extracomment>
        <translation>l.foot</translation>
    </message>
    <message>
        <source>BTN_Pedal_Right</source>
        <extracomment>п.нога / r.foot</extracomment>
        <translation>r.foot</translation>
    </message>
    <message>
        <source>AutoSearch</source>
        <extracomment>Авто поиск устройства / Auto search device</extracomment>
        <translation>Auto search device</translation>
    </message>
    <message>
        <source>ComPort</source>
        <extracomment>COM-порт / COM port</extracomment>
        <translation>COM port</translation>
    </message>
    <message>
        <source>DeviceSearchTimeout</source>
        <extracomment>Интервал поиска устройств / Device search interval</extracomment>
        <translation>Device search interval</translation>
    </message>
    <message>
        <source>StartMaximized</source>
        <extracomment>Запуск на полный экран / Start maximized</extracomment>
        <translation>Start maximized</translation>
    </message>
    <message>
        <source>DefaultToneLo</source>
        <extracomment>Низкий тон / Low tone</extracomment>
        <translation>Low tone</translation>
    </message>
    <message>
        <source>DefaultToneHi</source>
        <extracomment>Высокий тон / High tone</extracomment>
        <translation>High tone</translation>
    </message>
    <message>
        <source>DefaultFullTimeDuration</source>
        <extracomment>Полное время шагов / Full step time</extracomment>
        <translation>Full step time</translation>
    </message>
    <message>
        <source>stop</source>
        <extracomment>Остановить / Stop</extracomment>
        <translation>Stop</translation>
    </message>
    <message>
        <source>sm2</source>
        <extracomment>-2 этапа / -2 stages</extracomment>
        <translation>-2 stages</translation>
    </message>
    <message>
        <source>sm1</source>
        <extracomment>-1 этап / -1 stage</extracomment>
        <translation>-1 stage</translation>
    </message>
    <message>
        <source>s0</source>
        <extracomment>Повтор этапа / Repeat stage</extracomment>
        <translation>Repeat stage</translation>
    </message>
    <message>
        <source>sp1</source>
        <extracomment>+1 этап / +1 stage</extracomment>
        <translation>+1 stage</translation>
    </message>
    <message>
        <source>sp2</source>
        <extracomment>+2 этапа / +2 stages</extracomment>
        <translation>+2 stages</translation>
    </message>
    <message>
        <source>maxRepeats</source>
        <extracomment>Макс. повторов / Max repeats</extracomment>
        <translation>Max repeats</translation>
    </message>
    <message>
        <source>ExportBehavior</source>
        <extracomment>При экспорте / On export</extracomment>
        <translation>On export</translation>
    </message>
    <message>
        <source>Common</source>
        <extracomment>Общее / Common</extracomment>
        <translation>Common</translation>
    </message>
    <message>
        <source>Defaults</source>
        <extracomment>Значения по умолчанию / Default settings</extracomment>
        <translation>Default settings</translation>
    </message>
    <message>
        <source>err.</source>
        <extracomment>ош. / err.</extracomment>
        <translation>err.</translation>
    </message>
    <message>
        <source> Hz</source>
        <extracomment>&quot; Гц&quot; / &quot; Hz&quot;</extracomment>
        <translation> Hz</translation>
    </message>
    <message>
        <source> s</source>
        <extracomment>&quot; с&quot; / &quot; s&quot;</extracomment>
        <translation> s</translation>
    </message>
    <message>
        <source>s</source>
        <extracomment>с / s</extracomment>
        <translation>s</translation>
    </message>
    <message>
        <source>COM</source>
        <extracomment>COM / COM</extracomment>
        <translation>COM</translation>
    </message>
    <message>
        <source>LastName</source>
        <extracomment>Фамилия / Last name</extracomment>
        <translation>Last name</translation>
    </message>
    <message>
        <source>FirstName</source>
        <extracomment>Имя / First name</extracomment>
        <translation>First name</translation>
    </message>
    <message>
        <source>MiddleName</source>
        <extracomment>Отчество / Middle name</extracomment>
        <translation>Middle name</translation>
    </message>
    <message>
        <source>DOBYear</source>
        <extracomment>Год / Year</extracomment>
        <translation>Year</translation>
    </message>
    <message>
        <source>DOBMonth</source>
        <extracomment>Месяц / Month</extracomment>
        <translation>Month</translation>
    </message>
    <message>
        <source>DOBDay</source>
        <extracomment>День / Day</extracomment>
        <translation>Day</translation>
    </message>
    <message>
        <source>Gender</source>
        <extracomment>Пол / Gender</extracomment>
        <translation>Gender</translation>
    </message>
    <message>
        <source>GUID</source>
        <extracomment>Идентификатор / GUID</extracomment>
        <translation>GUID</translation>
    </message>
    <message>
        <source>Comment</source>
        <extracomment>Комментарий / Comment</extracomment>
        <translation>Comment</translation>
    </message>
    <message>
        <source>№</source>
        <translation>#</translation>
    </message>
    <message>
        <source>Этап</source>
        <translation>Stage</translation>
    </message>
    <message>
        <source>Реакции</source>
        <translation>Reactions</translation>
    </message>
    <message>
        <source>Правильные</source>
        <translation>Correct</translation>
    </message>
    <message>
        <source>Запоздалые</source>
        <translation>Delayed</translation>
    </message>
    <message>
        <source>Ошибочные</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Пропущенные</source>
        <translation>Missed</translation>
    </message>
    <message>
        <source>M реакции</source>
        <translation>M reaction</translation>
    </message>
    <message>
        <source>D реакции</source>
        <translation>D reaction</translation>
    </message>
    <message>
        <source>Ступень скор.</source>
        <translation>Speed step</translation>
    </message>
    <message>
        <source>Переход</source>
        <translation>Transfer</translation>
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
        <translation>σ</translation>
    </message>
    <message>
        <source>Требуемая реакция</source>
        <translation>Required reaction</translation>
    </message>
    <message>
        <source>Значение реакции</source>
        <translation>Reaction value</translation>
    </message>
    <message>
        <source>Сессия</source>
        <translation>Session</translation>
    </message>
    <message>
        <source>Завершено</source>
        <translation>Finished</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>ms</source>
        <translation>ms</translation>
    </message>
    <message>
        <source>Остановить</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>-2 этапа</source>
        <translation>-2 stages</translation>
    </message>
    <message>
        <source>-1 этап</source>
        <translation>-1 stage</translation>
    </message>
    <message>
        <source>Повтор этапа</source>
        <translation>Repeat stage</translation>
    </message>
    <message>
        <source>+1 этап</source>
        <translation>+1 stage</translation>
    </message>
    <message>
        <source>+2 этапа</source>
        <translation>+2 stages</translation>
    </message>
    <message>
        <source>Макс. повторов</source>
        <translation>Max repeats</translation>
    </message>
    <message>
        <source>Hz</source>
        <translation>Hz</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Other</translation>
    </message>
    <message>
        <source>Не удалось открыть &quot;%1&quot;: в системе не нашлось программы для этого.</source>
        <translation>Could not open &quot;%1&quot;: the system has no program for it.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Тарвело</source>
        <translation>Tarvelo</translation>
    </message>
    <message>
        <source>Сценарии</source>
        <translation>Scripts</translation>
    </message>
    <message>
        <source>Сессия</source>
        <translation>Session</translation>
    </message>
    <message>
        <source>Респонденты</source>
        <translation>Subjects</translation>
    </message>
    <message>
        <source>Устройство</source>
        <translation>Device</translation>
    </message>
    <message>
        <source>Настройки</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>New version</source>
        <translation>New version</translation>
    </message>
    <message>
        <source>Папка данных &quot;%1&quot; недоступна: %2. Сценарии, сессии и настройки не сохраняются, пока она недоступна.</source>
        <translation>The data folder &quot;%1&quot; cannot be used: %2. Scripts, sessions and settings are not saved while it cannot be used.</translation>
    </message>
    <message>
        <source>Идёт сессия</source>
        <translation>Session running</translation>
    </message>
    <message>
        <source>Сессия ещё идёт. Прервать её и закрыть программу? Записанные этапы сохраняются.</source>
        <translation>A session is still running. Abort it and close the program? The recorded stages are saved.</translation>
    </message>
    <message>
        <source>Прервать и закрыть</source>
        <translation>Abort and close</translation>
    </message>
    <message>
        <source>Продолжить сессию</source>
        <translation>Continue the session</translation>
    </message>
    <message>
        <source>Не удалось записать файл &quot;%1&quot;: %2</source>
        <translation>Could not write the file &quot;%1&quot;: %2</translation>
    </message>
</context>
<context>
    <name>NewVersionChecker</name>
    <message>
        <source>Click to download new version</source>
        <translation>Click to download new version</translation>
    </message>
</context>
<context>
    <name>PageDatabase</name>
    <message>
        <source>Редактирвоать респондента</source>
        <translation>Edit subject</translation>
    </message>
    <message>
        <source>Респонденты</source>
        <translation>Subjects</translation>
    </message>
    <message>
        <source>Сессии</source>
        <translation>Sessions</translation>
    </message>
    <message>
        <source>Неизвестный</source>
        <translation>Incognito</translation>
    </message>
    <message>
        <source>Удалить сессию</source>
        <translation>Remove session</translation>
    </message>
    <message>
        <source>Удаление сессии</source>
        <translation>Session removal</translation>
    </message>
    <message>
        <source>Действительно удалить результаты этой сессии?</source>
        <translation>Remove this session results?</translation>
    </message>
    <message>
        <source>Ошибка</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Невозможно удалить сессию</source>
        <translation>Unable to remove the session</translation>
    </message>
    <message>
        <source>Невозможно перенести папку респондента</source>
        <translation>Unable to move subject&apos;s folder</translation>
    </message>
    <message>
        <source>Невозможно удалить папку респондента</source>
        <translation>Unable to remove subject&apos;s folder</translation>
    </message>
</context>
<context>
    <name>PageScript</name>
    <message>
        <source>Удалить сценарий</source>
        <translation>Remove script</translation>
    </message>
    <message>
        <source>Редактировать сценарий</source>
        <translation>Edit script</translation>
    </message>
    <message>
        <source>Создать сценарий</source>
        <translation>Create script</translation>
    </message>
    <message>
        <source>Сохранить</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>Сохранить изменения</source>
        <translation>Save changes</translation>
    </message>
    <message>
        <source>Отмена</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Отменить изменения</source>
        <translation>Cancel changes</translation>
    </message>
    <message>
        <source>Сценарий редактируется: сохраните или отмените изменения</source>
        <translation>The script is being edited: save or cancel the changes</translation>
    </message>
    <message>
        <source>Несохранённые изменения</source>
        <translation>Unsaved changes</translation>
    </message>
    <message>
        <source>Сохранить изменения в сценарии &quot;%1&quot;?</source>
        <translation>Save the changes to the script &quot;%1&quot;?</translation>
    </message>
    <message>
        <source>Не сохранять</source>
        <translation>Don&apos;t save</translation>
    </message>
    <message>
        <source>Удаление сценария</source>
        <translation>Script removal</translation>
    </message>
    <message>
        <source>Сохранение сценария</source>
        <translation>Saving the script</translation>
    </message>
    <message>
        <source>Создание сценария</source>
        <translation>Script creation</translation>
    </message>
</context>
<context>
    <name>PlayScriptStopSessionButton</name>
    <message>
        <source>Прервать сессию</source>
        <translation>Abort session</translation>
    </message>
    <message>
        <source>Воспроизвести сценарий</source>
        <translation>Play script</translation>
    </message>
    <message>
        <source>Сценарий не выбран</source>
        <translation>No script selected</translation>
    </message>
    <message>
        <source>В сценарии нет ни одного шага</source>
        <translation>The script has no steps</translation>
    </message>
    <message>
        <source>Устройство не подключено</source>
        <translation>The device is not connected</translation>
    </message>
    <message>
        <source>Прервать сессию? Записанные этапы сохраняются.</source>
        <translation>Abort the session? The recorded stages are saved.</translation>
    </message>
    <message>
        <source>Прервать</source>
        <translation>Abort</translation>
    </message>
    <message>
        <source>Продолжить</source>
        <translation>Continue</translation>
    </message>
</context>
<context>
    <name>ScriptCreatorWidget</name>
    <message>
        <source>Создание сценария</source>
        <translation>Script creation</translation>
    </message>
    <message>
        <source>Создание этапа</source>
        <translation>Stage creation</translation>
    </message>
    <message>
        <source>Название</source>
        <translation>Title</translation>
    </message>
    <message>
        <source>Стимулы</source>
        <translation>Stimulae</translation>
    </message>
    <message>
        <source>Этапы</source>
        <translation>Stages</translation>
    </message>
    <message>
        <source>Создать</source>
        <translation>Create</translation>
    </message>
    <message>
        <source>Отмена</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Для двух и более шагов в этапе нужны хотя бы два стимула</source>
        <translation>Two or more steps in a stage need at least two stimuli</translation>
    </message>
    <message>
        <source>Шаги</source>
        <translation>Steps</translation>
    </message>
    <message>
        <source>Количество шагов в этапе</source>
        <translation>Steps amount in stage</translation>
    </message>
    <message>
        <source>Длительность стимула, мс</source>
        <translation>Stimulus duration, ms</translation>
    </message>
    <message>
        <source>Случайное приращение к длительности (мс), не более указанного значения</source>
        <translation>Random duration fluctuation (ms), not more than</translation>
    </message>
    <message>
        <source>Длительность задержки после стимула (мс)</source>
        <translation>Delay after stimulus (ms)</translation>
    </message>
    <message>
        <source>Случайное приращение к задержке (мс), не более указанного значения</source>
        <translation>Random delay fluctuation (ms), not more than</translation>
    </message>
</context>
<context>
    <name>SessionStatusLine</name>
    <message>
        <source>Связь с устройством потеряна</source>
        <translation>The link to the device is lost</translation>
    </message>
    <message>
        <source>Результаты не записываются</source>
        <translation>The results are not recorded</translation>
    </message>
    <message>
        <source>Сохранено:</source>
        <translation>Saved:</translation>
    </message>
    <message>
        <source>Не сохранено:</source>
        <translation>Not saved:</translation>
    </message>
</context>
<context>
    <name>SettingsWithLanguage</name>
    <message>
        <source>Language will be changed on program restart</source>
        <translation>Language will be changed on program restart</translation>
    </message>
</context>
<context>
    <name>SpecialPropertyView</name>
    <message>
        <source>Любой файл</source>
        <translation>Any file</translation>
    </message>
</context>
<context>
    <name>Stimulus</name>
    <message>
        <source>LED_TOP_Green</source>
        <extracomment>Зелёный 1 / Green 1</extracomment>
        <translation>Green 1</translation>
    </message>
    <message>
        <source>LED_TOP_White</source>
        <extracomment>Белый 1 / White 1</extracomment>
        <translation>White 1</translation>
    </message>
    <message>
        <source>LED_TOP_Blue</source>
        <extracomment>Синий 1 / Blue 1</extracomment>
        <translation>Blue 1</translation>
    </message>
    <message>
        <source>LED_TOP_Red</source>
        <extracomment>Красный 1 / Red1</extracomment>
        <translation>Red1</translation>
    </message>
    <message>
        <source>LED_TOP_Yellow</source>
        <extracomment>Жёлтый 1 / Yellow 1</extracomment>
        <translation>Yellow 1</translation>
    </message>
    <message>
        <source>LED_MID_Blue</source>
        <extracomment>Синий 2 / Blue 2</extracomment>
        <translation>Blue 2</translation>
    </message>
    <message>
        <source>LED_MID_Red</source>
        <extracomment>Красный 2 / Red 2</extracomment>
        <translation>Red 2</translation>
    </message>
    <message>
        <source>LED_MID_Yellow</source>
        <extracomment>Жёлтый 2 / Yellow 2</extracomment>
        <translation>Yellow 2</translation>
    </message>
    <message>
        <source>LED_MID_White</source>
        <extracomment>Белый 2 / White 2</extracomment>
        <translation>White 2</translation>
    </message>
    <message>
        <source>LED_MID_Green</source>
        <extracomment>Зелёный 2 / Green 2</extracomment>
        <translation>Green 2</translation>
    </message>
    <message>
        <source>LED_BOT_WhiteLeft</source>
        <extracomment>Левый белый (педаль) / Left white(pedal)</extracomment>
        <translation>Left white(pedal)</translation>
    </message>
    <message>
        <source>LED_BOT_WhiteRight</source>
        <extracomment>Правый белый (педаль) / Right white (pedal)</extracomment>
        <translation>Right white (pedal)</translation>
    </message>
    <message>
        <source>AUDIO_Left_Lo</source>
        <extracomment>Низкий звук слева / Low tone left</extracomment>
        <translation>Low tone left</translation>
    </message>
    <message>
        <source>AUDIO_Left_Hi</source>
        <extracomment>Высокий звук слева / High tone left</extracomment>
        <translation>High tone left</translation>
    </message>
    <message>
        <source>AUDIO_Right_Lo</source>
        <extracomment>Низкий звук справа / Low tone right</extracomment>
        <translation>Low tone right</translation>
    </message>
    <message>
        <source>AUDIO_Right_Hi</source>
        <extracomment>Высокий звук справа / High tone right</extracomment>
        <translation>High tone right</translation>
    </message>
    <message>
        <source>AUDIO_Both_Lo</source>
        <extracomment>Низкий звук стерео / Low tone stereo</extracomment>
        <translation>Low tone stereo</translation>
    </message>
    <message>
        <source>AUDIO_Both_Hi</source>
        <extracomment>Высокий звук стерео / High tone stereo</extracomment>
        <translation>High tone stereo</translation>
    </message>
</context>
<context>
    <name>TarveloModel</name>
    <message>
        <source>Имя сценария не может быть пустым</source>
        <translation>Script name cannot be empty</translation>
    </message>
    <message>
        <source>Такое имя сценария уже используется</source>
        <translation>This title is already used</translation>
    </message>
</context>
<context>
    <name>TarveloScriptEditor</name>
    <message>
        <source>Полное время шагов</source>
        <translation>Full step time</translation>
    </message>
    <message>
        <source>Если активировано, то стимул не прекращается после нажатия кнопки/педали</source>
        <translation>If checked, the stimulus doesn&apos;t stop when a button or pedal is pressed</translation>
    </message>
    <message>
        <source>Название</source>
        <translation>Title</translation>
    </message>
    <message>
        <source>Низкий тон</source>
        <translation>Low tone</translation>
    </message>
    <message>
        <source>Описание</source>
        <translation>Description</translation>
    </message>
    <message>
        <source>Высокий тон</source>
        <translation>High tone</translation>
    </message>
    <message>
        <source>Сообщение</source>
        <translation>Message</translation>
    </message>
    <message>
        <source>Этапы</source>
        <translation>Stages</translation>
    </message>
    <message>
        <source>Добавить этап</source>
        <translation>Add stage</translation>
    </message>
    <message>
        <source>Удалить этап</source>
        <translation>Remove stage</translation>
    </message>
    <message>
        <source>Переходы</source>
        <translation>Transfers</translation>
    </message>
    <message>
        <source>Количество ошибок для активации перехода в конце этапа, пусто - действие не применяется</source>
        <translation>Number of errors that activates the transfer at the end of the stage; empty: not applied</translation>
    </message>
    <message>
        <source>Перейти к этапу </source>
        <translation>Go to stage </translation>
    </message>
    <message>
        <source>Удаление этапа</source>
        <translation>Stage removal</translation>
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
        <translation>Session</translation>
    </message>
    <message>
        <source>Стоп</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Макс.повторов</source>
        <translation>Max repeats</translation>
    </message>
    <message>
        <source>Повтор</source>
        <translation>Repeat</translation>
    </message>
    <message>
        <source>Не записывать результаты</source>
        <translation>Do not record results</translation>
    </message>
    <message>
        <source>Экспорт</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>Ошибка сохранения</source>
        <translation>Error saving</translation>
    </message>
</context>
<context>
    <name>TarveloSettingsWidget</name>
    <message>
        <source>Device</source>
        <translation>Device</translation>
    </message>
    <message>
        <source>SN</source>
        <translation>SN</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Invert audio</source>
        <translation>Invert audio</translation>
    </message>
    <message>
        <source>Invert pedals</source>
        <translation>Invert pedals</translation>
    </message>
    <message>
        <source>Flash all leds on start</source>
        <translation>Flash all leds on start</translation>
    </message>
    <message>
        <source>Flash</source>
        <translation>Update firmware</translation>
    </message>
</context>
<context>
    <name>TarveloStageEditor</name>
    <message>
        <source>Добавить шаг</source>
        <translation>Add step</translation>
    </message>
    <message>
        <source>Стимул</source>
        <translation>Stimulus</translation>
    </message>
    <message>
        <source>Длительность стимула</source>
        <translation>Stimulus duration</translation>
    </message>
    <message>
        <source>Задержка после стимулом</source>
        <translation>Delay after stimulus</translation>
    </message>
</context>
<context>
    <name>TarveloStatusBar</name>
    <message>
        <source>Тарвело не найден</source>
        <translation>Tarvelo not found</translation>
    </message>
    <message>
        <source>Тарвело подключен</source>
        <translation>Tarvelo connected</translation>
    </message>
    <message>
        <source>Сценарий не загружен: связь с устройством прервалась</source>
        <translation>The script was not uploaded: the link to the device broke off</translation>
    </message>
    <message>
        <source>Экспортировано: %1</source>
        <translation>Exported: %1</translation>
    </message>
    <message>
        <source>Показать в папке</source>
        <translation>Show in folder</translation>
    </message>
    <message>
        <source>Порт %1 недоступен: его занимает другая программа.</source>
        <translation>Port %1 is not available: another program holds it.</translation>
    </message>
    <message>
        <source>Нет прав на порт %1: добавьте пользователя в группу «%2» и войдите в систему заново.</source>
        <translation>No permission for port %1: add the user to the group “%2” and log in again.</translation>
    </message>
</context>
<context>
    <name>UserEditor</name>
    <message>
        <source>Редактирование респондента</source>
        <translation>Subject editing</translation>
    </message>
    <message>
        <source>Создание респондента</source>
        <translation>Subject creation</translation>
    </message>
    <message>
        <source>Удалить</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>Изменить</source>
        <translation>Change</translation>
    </message>
    <message>
        <source>Создать</source>
        <translation>Create</translation>
    </message>
    <message>
        <source>Отмена</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Удаление</source>
        <translation>Removal</translation>
    </message>
    <message>
        <source>Удалить этого респондента со всеми сессиями?</source>
        <translation>Remove this subject with all sessions&apos; data?</translation>
    </message>
</context>
</TS>
