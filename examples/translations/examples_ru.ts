<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru" sourcelanguage="en">
<context>
    <name>ChartExport</name>
    <message>
        <source>there can be no image of %1 x %2 pixels</source>
        <translation>изображение %1 x %2 пикселей невозможно</translation>
    </message>
    <message>
        <source>the image cannot be encoded</source>
        <translation>изображение не удаётся закодировать</translation>
    </message>
    <message>
        <source>there is nothing to be seen</source>
        <translation>показывать нечего</translation>
    </message>
</context>
<context>
    <name>ChartOutput</name>
    <message>
        <source>&amp;Export picture...</source>
        <translation>&amp;Экспортировать рисунок...</translation>
    </message>
    <message>
        <source>Save &amp;samples...</source>
        <translation>&amp;Сохранить значения...</translation>
    </message>
    <message>
        <source>Print pre&amp;view...</source>
        <translation>Пр&amp;едварительный просмотр...</translation>
    </message>
    <message>
        <source>&amp;Print...</source>
        <translation>&amp;Печать...</translation>
    </message>
    <message>
        <source>Export picture</source>
        <translation>Экспорт рисунка</translation>
    </message>
    <message>
        <source>Pixels of the picture for a pixel of the screen:</source>
        <translation>Пикселей рисунка на пиксель экрана:</translation>
    </message>
    <message>
        <source>PNG image (*.png)</source>
        <translation>Изображение PNG (*.png)</translation>
    </message>
    <message>
        <source>SVG drawing (*.svg)</source>
        <translation>Рисунок SVG (*.svg)</translation>
    </message>
    <message>
        <source>PDF document (*.pdf)</source>
        <translation>Документ PDF (*.pdf)</translation>
    </message>
    <message>
        <source>Save samples</source>
        <translation>Сохранение значений</translation>
    </message>
    <message>
        <source>Table (*.csv)</source>
        <translation>Таблица (*.csv)</translation>
    </message>
</context>
<context>
    <name>ChartSettingsDialog</name>
    <message>
        <source>Settings</source>
        <translation>Настройки</translation>
    </message>
    <message>
        <source>Colors</source>
        <translation>Цвета</translation>
    </message>
    <message>
        <source>&amp;Background:</source>
        <translation>&amp;Фон:</translation>
    </message>
    <message>
        <source>Background of the charts</source>
        <translation>Фон графиков</translation>
    </message>
    <message>
        <source>&amp;Grid:</source>
        <translation>&amp;Сетка:</translation>
    </message>
    <message>
        <source>Grid and frame</source>
        <translation>Сетка и рамка</translation>
    </message>
    <message>
        <source>C&amp;ursor line:</source>
        <translation>&amp;Линия курсора:</translation>
    </message>
    <message>
        <source>Line of the cursor</source>
        <translation>Линия курсора</translation>
    </message>
    <message>
        <source>Live view</source>
        <translation>Текущие данные</translation>
    </message>
    <message>
        <source> s</source>
        <translation> с</translation>
    </message>
    <message>
        <source>&amp;Visible interval:</source>
        <translation>&amp;Видимый интервал:</translation>
    </message>
    <message>
        <source>&amp;Window:</source>
        <translation>&amp;Окно:</translation>
    </message>
    <message>
        <source>Slides with each sample</source>
        <translation>Сдвигается с каждым значением</translation>
    </message>
    <message>
        <source>Jumps when full</source>
        <translation>Сдвигается при заполнении</translation>
    </message>
    <message>
        <source>This chart shows finished data, not a live view.</source>
        <translation>Этот график показывает готовые данные, а не текущие.</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>Графики</translation>
    </message>
    <message>
        <source>&amp;Remove empty panes</source>
        <translation>&amp;Удалять пустые графики</translation>
    </message>
    <message>
        <source>Scale</source>
        <translation>Масштаб</translation>
    </message>
    <message>
        <source>&amp;Scale of Y:</source>
        <translation>&amp;Масштаб по Y:</translation>
    </message>
    <message>
        <source>Individual for each series</source>
        <translation>Свой для каждого ряда</translation>
    </message>
    <message>
        <source>Common to all series</source>
        <translation>Общий для всех рядов</translation>
    </message>
    <message>
        <source>Auto scale &amp;X</source>
        <translation>Автомасштаб по &amp;X</translation>
    </message>
    <message>
        <source>Auto scale &amp;Y</source>
        <translation>Автомасштаб по &amp;Y</translation>
    </message>
    <message>
        <source>New series</source>
        <translation>Новые ряды</translation>
    </message>
    <message>
        <source>Colors:</source>
        <translation>Цвета:</translation>
    </message>
    <message>
        <source>&amp;Line width:</source>
        <translation>&amp;Толщина линии:</translation>
    </message>
    <message>
        <source>Show &amp;points</source>
        <translation>&amp;Показывать точки</translation>
    </message>
    <message>
        <source>Point si&amp;ze:</source>
        <translation>&amp;Размер точек:</translation>
    </message>
    <message>
        <source>Color %1 of %2</source>
        <translation>Цвет %1 из %2</translation>
    </message>
    <message>
        <source> px</source>
        <translation> пикс.</translation>
    </message>
</context>
<context>
    <name>ChartWindow</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Файл</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Выход</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Правка</translation>
    </message>
    <message>
        <source>&amp;Settings...</source>
        <translation>&amp;Настройки...</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Вид</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>--size wants WxH, each from %1 to %2, and not &quot;%3&quot;</source>
        <translation>--size требует ШxВ, каждое от %1 до %2, а не «%3»</translation>
    </message>
    <message>
        <source>Write a picture of the window as PNG, and end.</source>
        <translation>Записать изображение окна в PNG и завершиться.</translation>
    </message>
    <message>
        <source>FILE.png</source>
        <translation>ФАЙЛ.png</translation>
    </message>
    <message>
        <source>Size of the window in pixels (1200x1000, or as last time).</source>
        <translation>Размер окна в пикселях (1200x1000 или как в прошлый раз).</translation>
    </message>
    <message>
        <source>WxH</source>
        <translation>ШxВ</translation>
    </message>
    <message>
        <source>Show each column in a pane of its own.</source>
        <translation>Показать каждый столбец на отдельном графике.</translation>
    </message>
    <message>
        <source>Show all columns in one pane.</source>
        <translation>Показать все столбцы на одном графике.</translation>
    </message>
    <message>
        <source>Shows the columns of a CSV or TSV file over the first one, which holds numbers or dates and times in ISO form.</source>
        <translation>Показывает столбцы файла CSV или TSV в зависимости от первого, в котором числа либо дата и время по ISO.</translation>
    </message>
    <message>
        <source>FILE</source>
        <translation>ФАЙЛ</translation>
    </message>
    <message>
        <source>The file to show.</source>
        <translation>Файл, который нужно показать.</translation>
    </message>
    <message>
        <source>[FILE]</source>
        <translation>[ФАЙЛ]</translation>
    </message>
    <message>
        <source>more than one file: %1</source>
        <translation>больше одного файла: %1</translation>
    </message>
    <message>
        <source>--screenshot needs a file to show and a file to write</source>
        <translation>для --screenshot нужны файл для показа и файл для записи</translation>
    </message>
    <message>
        <source>--separate and --combine exclude each other</source>
        <translation>--separate и --combine исключают друг друга</translation>
    </message>
    <message>
        <source>there is no display; --screenshot writes a picture</source>
        <translation>нет дисплея; --screenshot записывает изображение</translation>
    </message>
    <message>
        <source>Time from sample to sample in milliseconds (250).</source>
        <translation>Время между значениями в миллисекундах (250).</translation>
    </message>
    <message>
        <source>MS</source>
        <translation>МС</translation>
    </message>
    <message>
        <source>Width of the view in seconds (60, or as last time).</source>
        <translation>Ширина видимой области в секундах (60 или как в прошлый раз).</translation>
    </message>
    <message>
        <source>SECONDS</source>
        <translation>СЕКУНДЫ</translation>
    </message>
    <message>
        <source>Age at which samples go, in seconds (600).</source>
        <translation>Возраст, в котором значения удаляются, в секундах (600).</translation>
    </message>
    <message>
        <source>Show each curve in a pane of its own.</source>
        <translation>Показать каждую кривую на отдельном графике.</translation>
    </message>
    <message>
        <source>End after so many seconds.</source>
        <translation>Завершиться через столько секунд.</translation>
    </message>
    <message>
        <source>N</source>
        <translation>N</translation>
    </message>
    <message>
        <source>Write a picture of the window as PNG at that end.</source>
        <translation>Записать при этом изображение окна в PNG.</translation>
    </message>
    <message>
        <source>Write all samples to a table, which csvviewer shows.</source>
        <translation>Записать все значения в таблицу, которую показывает csvviewer.</translation>
    </message>
    <message>
        <source>FILE.csv</source>
        <translation>ФАЙЛ.csv</translation>
    </message>
    <message>
        <source>Folder of the kernel&apos;s counters (/proc).</source>
        <translation>Папка счётчиков ядра (/proc).</translation>
    </message>
    <message>
        <source>FOLDER</source>
        <translation>ПАПКА</translation>
    </message>
    <message>
        <source>Shows what the machine is doing: processors, load, memory, network and disks.</source>
        <translation>Показывает, чем занят компьютер: процессоры, нагрузка, память, сеть и диски.</translation>
    </message>
    <message>
        <source>unknown argument: %1</source>
        <translation>неизвестный аргумент: %1</translation>
    </message>
    <message>
        <source>--%1 wants a whole number from %2 to %3, and not &quot;%4&quot;</source>
        <translation>--%1 требует целое число от %2 до %3, а не «%4»</translation>
    </message>
    <message>
        <source>--keep must not be less than --window: the view would be half empty</source>
        <translation>--keep не может быть меньше --window: вид был бы наполовину пуст</translation>
    </message>
    <message>
        <source>--screenshot needs a file to write, and --seconds to say when</source>
        <translation>для --screenshot нужны файл для записи и --seconds, чтобы знать, когда</translation>
    </message>
    <message>
        <source>--record needs a file to write</source>
        <translation>для --record нужен файл для записи</translation>
    </message>
    <message>
        <source>there is no display; --screenshot writes a picture, --record a table</source>
        <translation>нет дисплея; --screenshot записывает изображение, --record — таблицу</translation>
    </message>
</context>
<context>
    <name>CsvTableBuilder</name>
    <message>
        <source>there is no row of values</source>
        <translation>нет ни одной строки значений</translation>
    </message>
    <message>
        <source>there is only one column; wanted are X and values, separated by comma, semicolon or tab</source>
        <translation>есть только один столбец; нужны X и значения через запятую, точку с запятой или табуляцию</translation>
    </message>
    <message>
        <source>Column %1</source>
        <translation>Столбец %1</translation>
    </message>
    <message>
        <source>cells in this row: %1, in the first: %2</source>
        <translation>ячеек в этой строке: %1, в первой: %2</translation>
    </message>
    <message>
        <source>X is missing</source>
        <translation>нет X</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no date and time</source>
        <translation>«%1» — не дата и время</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is neither a number nor a date and time</source>
        <translation>«%1» — не число и не дата и время</translation>
    </message>
    <message>
        <source>X is infinite</source>
        <translation>X бесконечен</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is out of the range of numbers</source>
        <translation>«%1» вне диапазона чисел</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no number</source>
        <translation>«%1» — не число</translation>
    </message>
</context>
<context>
    <name>CsvTokenizer</name>
    <message>
        <source>text behind a quoted cell</source>
        <translation>текст после ячейки в кавычках</translation>
    </message>
    <message>
        <source>the quote is not closed</source>
        <translation>кавычка не закрыта</translation>
    </message>
    <message>
        <source>this is a binary file: it has a NUL byte here</source>
        <translation>это двоичный файл: здесь нулевой байт</translation>
    </message>
    <message>
        <source>the row is longer than %1 bytes; is a quote not closed?</source>
        <translation>строка длиннее %1 байт; не закрыта кавычка?</translation>
    </message>
</context>
<context>
    <name>Monitor</name>
    <message>
        <source>there is nothing to show</source>
        <translation>показывать нечего</translation>
    </message>
</context>
<context>
    <name>MonitorWindow</name>
    <message>
        <source>%1 - %2</source>
        <translation>%1 - %2</translation>
    </message>
</context>
<context>
    <name>ProcCounters</name>
    <message>
        <source>no counters that are known here</source>
        <translation>нет известных здесь счётчиков</translation>
    </message>
</context>
<context>
    <name>Quantity</name>
    <message>
        <source>CPU %</source>
        <translation>ЦП %</translation>
    </message>
    <message>
        <source>CPU %1 %</source>
        <translation>ЦП %1 %</translation>
    </message>
    <message>
        <source>Net in KiB/s</source>
        <translation>Сеть приём КиБ/с</translation>
    </message>
    <message>
        <source>Net out KiB/s</source>
        <translation>Сеть отдача КиБ/с</translation>
    </message>
    <message>
        <source>Disk read KiB/s</source>
        <translation>Диск чтение КиБ/с</translation>
    </message>
    <message>
        <source>Disk write KiB/s</source>
        <translation>Диск запись КиБ/с</translation>
    </message>
    <message>
        <source>Load</source>
        <translation>Нагрузка</translation>
    </message>
    <message>
        <source>Memory MiB</source>
        <translation>Память МиБ</translation>
    </message>
</context>
<context>
    <name>RecentFiles</name>
    <message>
        <source>Open &amp;recent</source>
        <translation>&amp;Недавние файлы</translation>
    </message>
    <message>
        <source>&amp;Clear list</source>
        <translation>&amp;Очистить список</translation>
    </message>
</context>
<context>
    <name>Recorder</name>
    <message>
        <source>Time</source>
        <translation>Время</translation>
    </message>
</context>
<context>
    <name>SampleWriter</name>
    <message>
        <source>Time</source>
        <translation>Время</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
</context>
<context>
    <name>ViewerWindow</name>
    <message>
        <source>&amp;Open...</source>
        <translation>&amp;Открыть...</translation>
    </message>
    <message>
        <source>Re&amp;load</source>
        <translation>Перечит&amp;ать</translation>
    </message>
    <message>
        <source>Reading %1</source>
        <translation>Чтение %1</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Открыть</translation>
    </message>
    <message>
        <source>Tables (*.csv *.tsv *.txt);;All files (*)</source>
        <translation>Таблицы (*.csv *.tsv *.txt);;Все файлы (*)</translation>
    </message>
    <message>
        <source>%1 - %2</source>
        <translation>%1 - %2</translation>
    </message>
</context>
<context>
    <name>WholeFile</name>
    <message>
        <source>this is no file</source>
        <translation>это не файл</translation>
    </message>
</context>
</TS>
