<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru" sourcelanguage="en">
<context>
    <name>AbstractChartModel</name>
    <message>
        <source>Line view</source>
        <translation>Линия</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Имя</translation>
    </message>
    <message>
        <source>Remove series</source>
        <translation>Удалить ряд</translation>
    </message>
    <message>
        <source>Remove all series</source>
        <translation>Удалить все ряды</translation>
    </message>
    <message>
        <source>Clear points</source>
        <translation>Очистить точки</translation>
    </message>
    <message>
        <source>Adjust columns width</source>
        <translation>Подогнать ширину столбцов</translation>
    </message>
    <message>
        <source>Combine</source>
        <translation>Объединить</translation>
    </message>
    <message>
        <source>Separate</source>
        <translation>Разделить</translation>
    </message>
    <message>
        <source>Add chart</source>
        <translation>Добавить график</translation>
    </message>
    <message>
        <source>Remove empty charts</source>
        <translation>Удалить пустые графики</translation>
    </message>
    <message>
        <source>Select area</source>
        <translation>Выделить область</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Переместить</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Увеличить</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Уменьшить</translation>
    </message>
    <message>
        <source>Zoom in (X axis)</source>
        <translation>Увеличить (ось X)</translation>
    </message>
    <message>
        <source>Zoom out (X axis)</source>
        <translation>Уменьшить (ось X)</translation>
    </message>
    <message>
        <source>Zoom in (Y axis)</source>
        <translation>Увеличить (ось Y)</translation>
    </message>
    <message>
        <source>Zoom out (Y axis)</source>
        <translation>Уменьшить (ось Y)</translation>
    </message>
    <message>
        <source>Undo zoom</source>
        <translation>Отменить масштаб</translation>
    </message>
    <message>
        <source>Scroll down</source>
        <translation>Прокрутить вниз</translation>
    </message>
    <message>
        <source>Scroll to begin</source>
        <translation>Прокрутить в начало</translation>
    </message>
    <message>
        <source>Scroll backward</source>
        <translation>Прокрутить назад</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Пауза</translation>
    </message>
    <message>
        <source>Scroll forward</source>
        <translation>Прокрутить вперёд</translation>
    </message>
    <message>
        <source>Scroll to end</source>
        <translation>Прокрутить в конец</translation>
    </message>
    <message>
        <source>Scroll up</source>
        <translation>Прокрутить вверх</translation>
    </message>
    <message>
        <source>Adjust size</source>
        <translation>Подогнать размер</translation>
    </message>
    <message>
        <source>Undo action</source>
        <translation>Отменить</translation>
    </message>
    <message>
        <source>Redo action</source>
        <translation>Повторить</translation>
    </message>
    <message>
        <source>Add series</source>
        <translation>Добавить ряд</translation>
    </message>
    <message>
        <source>Do you really want to remove all series?</source>
        <translation>Действительно удалить все ряды?</translation>
    </message>
    <message>
        <source>Do you really want to clear points?</source>
        <translation>Действительно очистить точки?</translation>
    </message>
</context>
<context>
    <name>AbstractChartSeries</name>
    <message>
        <source>Time</source>
        <translation>Время</translation>
    </message>
</context>
<context>
    <name>ChartWidget</name>
    <message>
        <source>Select area</source>
        <translation>Выделить область</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Переместить</translation>
    </message>
    <message>
        <source>Scaling with mouse wheel</source>
        <translation>Масштаб колесом мыши</translation>
    </message>
    <message>
        <source>Chart</source>
        <translation>График</translation>
    </message>
    <message>
        <source>Chart: %1</source>
        <translation>График: %1</translation>
    </message>
    <message>
        <source>No series</source>
        <translation>Нет рядов</translation>
    </message>
    <message>
        <source>X from %1 to %2</source>
        <translation>X от %1 до %2</translation>
    </message>
    <message>
        <source>Y of %1 from %2 to %3</source>
        <translation>Y ряда %1 от %2 до %3</translation>
    </message>
    <message>
        <source>cursor at %1</source>
        <translation>курсор на %1</translation>
    </message>
</context>
<context>
    <name>MultiChart</name>
    <message>
        <source>Chart</source>
        <translation>График</translation>
    </message>
    <message>
        <source>Chart toolbar</source>
        <translation>Панель графика</translation>
    </message>
    <message>
        <source>Legend</source>
        <translation>Легенда</translation>
    </message>
</context>
<context>
    <name>SeriesEditor</name>
    <message>
        <source>Series properties</source>
        <translation>Свойства ряда</translation>
    </message>
    <message>
        <source>Restore defaults</source>
        <translation>Восстановить значения по умолчанию</translation>
    </message>
</context>
<context>
    <name>SeriesPropertiesDialog</name>
    <message>
        <source>Series properties</source>
        <translation>Свойства ряда</translation>
    </message>
    <message>
        <source>Line color</source>
        <translation>Цвет линии</translation>
    </message>
    <message>
        <source>Change line color</source>
        <translation>Изменить цвет линии</translation>
    </message>
    <message>
        <source>...</source>
        <translation>...</translation>
    </message>
    <message>
        <source>Line width</source>
        <translation>Толщина линии</translation>
    </message>
    <message>
        <source>Point size</source>
        <translation>Размер точек</translation>
    </message>
    <message>
        <source>Show points</source>
        <translation>Показывать точки</translation>
    </message>
</context>
</TS>
