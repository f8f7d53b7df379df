<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AbstractChartModel</name>
    <message>
        <source>Line view</source>
        <translation>Linie</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Remove series</source>
        <translation>Kurve entfernen</translation>
    </message>
    <message>
        <source>Remove all series</source>
        <translation>Alle Kurven entfernen</translation>
    </message>
    <message>
        <source>Clear points</source>
        <translation>Punkte löschen</translation>
    </message>
    <message>
        <source>Adjust columns width</source>
        <translation>Spaltenbreite anpassen</translation>
    </message>
    <message>
        <source>Combine</source>
        <translation>Zusammenlegen</translation>
    </message>
    <message>
        <source>Separate</source>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>Add chart</source>
        <translation>Diagramm hinzufügen</translation>
    </message>
    <message>
        <source>Remove empty charts</source>
        <translation>Leere Diagramme entfernen</translation>
    </message>
    <message>
        <source>Select area</source>
        <translation>Bereich auswählen</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Verschieben</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Zoom in (X axis)</source>
        <translation>Vergrößern (X-Achse)</translation>
    </message>
    <message>
        <source>Zoom out (X axis)</source>
        <translation>Verkleinern (X-Achse)</translation>
    </message>
    <message>
        <source>Zoom in (Y axis)</source>
        <translation>Vergrößern (Y-Achse)</translation>
    </message>
    <message>
        <source>Zoom out (Y axis)</source>
        <translation>Verkleinern (Y-Achse)</translation>
    </message>
    <message>
        <source>Undo zoom</source>
        <translation>Vergrößerung aufheben</translation>
    </message>
    <message>
        <source>Scroll down</source>
        <translation>Nach unten blättern</translation>
    </message>
    <message>
        <source>Scroll to begin</source>
        <translation>Zum Anfang blättern</translation>
    </message>
    <message>
        <source>Scroll backward</source>
        <translation>Zurückblättern</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Scroll forward</source>
        <translation>Vorblättern</translation>
    </message>
    <message>
        <source>Scroll to end</source>
        <translation>Zum Ende blättern</translation>
    </message>
    <message>
        <source>Scroll up</source>
        <translation>Nach oben blättern</translation>
    </message>
    <message>
        <source>Adjust size</source>
        <translation>Größe anpassen</translation>
    </message>
    <message>
        <source>Undo action</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo action</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Add series</source>
        <translation>Kurve hinzufügen</translation>
    </message>
    <message>
        <source>Do you really want to remove all series?</source>
        <translation>Sollen wirklich alle Kurven entfernt werden?</translation>
    </message>
    <message>
        <source>Do you really want to clear points?</source>
        <translation>Sollen wirklich alle Punkte gelöscht werden?</translation>
    </message>
</context>
<context>
    <name>AbstractChartSeries</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
</context>
<context>
    <name>ChartWidget</name>
    <message>
        <source>Select area</source>
        <translation>Bereich auswählen</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Verschieben</translation>
    </message>
    <message>
        <source>Scaling with mouse wheel</source>
        <translation>Mit dem Mausrad vergrößern</translation>
    </message>
    <message>
        <source>Chart</source>
        <translation>Diagramm</translation>
    </message>
    <message>
        <source>Chart: %1</source>
        <translation>Diagramm: %1</translation>
    </message>
    <message>
        <source>No series</source>
        <translation>Keine Kurven</translation>
    </message>
    <message>
        <source>X from %1 to %2</source>
        <translation>X von %1 bis %2</translation>
    </message>
    <message>
        <source>Y of %1 from %2 to %3</source>
        <translation>Y der Kurve %1 von %2 bis %3</translation>
    </message>
    <message>
        <source>cursor at %1</source>
        <translation>Cursor bei %1</translation>
    </message>
</context>
<context>
    <name>MultiChart</name>
    <message>
        <source>Chart</source>
        <translation>Diagramm</translation>
    </message>
    <message>
        <source>Chart toolbar</source>
        <translation>Diagrammleiste</translation>
    </message>
    <message>
        <source>Legend</source>
        <translation>Legende</translation>
    </message>
</context>
<context>
    <name>SeriesEditor</name>
    <message>
        <source>Series properties</source>
        <translation>Eigenschaften der Kurve</translation>
    </message>
    <message>
        <source>Restore defaults</source>
        <translation>Standardwerte wiederherstellen</translation>
    </message>
</context>
<context>
    <name>SeriesPropertiesDialog</name>
    <message>
        <source>Series properties</source>
        <translation>Eigenschaften der Kurve</translation>
    </message>
    <message>
        <source>Line color</source>
        <translation>Linienfarbe</translation>
    </message>
    <message>
        <source>Change line color</source>
        <translation>Linienfarbe ändern</translation>
    </message>
    <message>
        <source>...</source>
        <translation>...</translation>
    </message>
    <message>
        <source>Line width</source>
        <translation>Linienbreite</translation>
    </message>
    <message>
        <source>Point size</source>
        <translation>Punktgröße</translation>
    </message>
    <message>
        <source>Show points</source>
        <translation>Punkte anzeigen</translation>
    </message>
</context>
</TS>
