<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>ChartExport</name>
    <message>
        <source>there can be no image of %1 x %2 pixels</source>
        <translation>ein Bild von %1 x %2 Pixeln ist nicht möglich</translation>
    </message>
    <message>
        <source>the image cannot be encoded</source>
        <translation>das Bild lässt sich nicht kodieren</translation>
    </message>
    <message>
        <source>there is nothing to be seen</source>
        <translation>es ist nichts zu sehen</translation>
    </message>
</context>
<context>
    <name>ChartOutput</name>
    <message>
        <source>&amp;Export picture...</source>
        <translation>Bild e&amp;xportieren...</translation>
    </message>
    <message>
        <source>Save &amp;samples...</source>
        <translation>Mess&amp;werte speichern...</translation>
    </message>
    <message>
        <source>Print pre&amp;view...</source>
        <translation>Druck&amp;vorschau...</translation>
    </message>
    <message>
        <source>&amp;Print...</source>
        <translation>&amp;Drucken...</translation>
    </message>
    <message>
        <source>Export picture</source>
        <translation>Bild exportieren</translation>
    </message>
    <message>
        <source>Pixels of the picture for a pixel of the screen:</source>
        <translation>Pixel im Bild für einen Pixel auf dem Bildschirm:</translation>
    </message>
    <message>
        <source>PNG image (*.png)</source>
        <translation>PNG-Bild (*.png)</translation>
    </message>
    <message>
        <source>SVG drawing (*.svg)</source>
        <translation>SVG-Zeichnung (*.svg)</translation>
    </message>
    <message>
        <source>PDF document (*.pdf)</source>
        <translation>PDF-Dokument (*.pdf)</translation>
    </message>
    <message>
        <source>Save samples</source>
        <translation>Messwerte speichern</translation>
    </message>
    <message>
        <source>Table (*.csv)</source>
        <translation>Tabelle (*.csv)</translation>
    </message>
</context>
<context>
    <name>ChartSettingsDialog</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Colors</source>
        <translation>Farben</translation>
    </message>
    <message>
        <source>&amp;Background:</source>
        <translation>&amp;Hintergrund:</translation>
    </message>
    <message>
        <source>Background of the charts</source>
        <translation>Hintergrund der Diagramme</translation>
    </message>
    <message>
        <source>&amp;Grid:</source>
        <translation>&amp;Gitter:</translation>
    </message>
    <message>
        <source>Grid and frame</source>
        <translation>Gitter und Rahmen</translation>
    </message>
    <message>
        <source>C&amp;ursor line:</source>
        <translation>C&amp;ursorlinie:</translation>
    </message>
    <message>
        <source>Line of the cursor</source>
        <translation>Linie des Cursors</translation>
    </message>
    <message>
        <source>Live view</source>
        <translation>Live-Ansicht</translation>
    </message>
    <message>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <source>&amp;Visible interval:</source>
        <translation>&amp;Sichtbarer Bereich:</translation>
    </message>
    <message>
        <source>&amp;Window:</source>
        <translation>&amp;Fenster:</translation>
    </message>
    <message>
        <source>Slides with each sample</source>
        <translation>Gleitet mit jedem Messwert</translation>
    </message>
    <message>
        <source>Jumps when full</source>
        <translation>Springt, wenn es voll ist</translation>
    </message>
    <message>
        <source>This chart shows finished data, not a live view.</source>
        <translation>Dieses Diagramm zeigt abgeschlossene Daten und keine Live-Ansicht.</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>Diagramme</translation>
    </message>
    <message>
        <source>&amp;Remove empty panes</source>
        <translation>&amp;Leere Diagramme entfernen</translation>
    </message>
    <message>
        <source>Scale</source>
        <translation>Skala</translation>
    </message>
    <message>
        <source>&amp;Scale of Y:</source>
        <translation>Y-S&amp;kala:</translation>
    </message>
    <message>
        <source>Individual for each series</source>
        <translation>Eigene für jede Kurve</translation>
    </message>
    <message>
        <source>Common to all series</source>
        <translation>Gemeinsame für alle Kurven</translation>
    </message>
    <message>
        <source>Auto scale &amp;X</source>
        <translation>&amp;X automatisch skalieren</translation>
    </message>
    <message>
        <source>Auto scale &amp;Y</source>
        <translation>&amp;Y automatisch skalieren</translation>
    </message>
    <message>
        <source>New series</source>
        <translation>Neue Kurven</translation>
    </message>
    <message>
        <source>Colors:</source>
        <translation>Farben:</translation>
    </message>
    <message>
        <source>&amp;Line width:</source>
        <translation>Linien&amp;breite:</translation>
    </message>
    <message>
        <source>Show &amp;points</source>
        <translation>&amp;Punkte anzeigen</translation>
    </message>
    <message>
        <source>Point si&amp;ze:</source>
        <translation>Punktg&amp;röße:</translation>
    </message>
    <message>
        <source>Color %1 of %2</source>
        <translation>Farbe %1 von %2</translation>
    </message>
    <message>
        <source> px</source>
        <translation> px</translation>
    </message>
</context>
<context>
    <name>ChartWindow</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Settings...</source>
        <translation>&amp;Einstellungen...</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>--size wants WxH, each from %1 to %2, and not &quot;%3&quot;</source>
        <translation>--size erwartet BxH, beide von %1 bis %2, und nicht „%3“</translation>
    </message>
    <message>
        <source>Write a picture of the window as PNG, and end.</source>
        <translation>Ein Bild des Fensters als PNG schreiben und enden.</translation>
    </message>
    <message>
        <source>FILE.png</source>
        <translation>DATEI.png</translation>
    </message>
    <message>
        <source>Size of the window in pixels (1200x1000, or as last time).</source>
        <translation>Größe des Fensters in Pixeln (1200x1000 oder wie beim letzten Mal).</translation>
    </message>
    <message>
        <source>WxH</source>
        <translation>BxH</translation>
    </message>
    <message>
        <source>Show each column in a pane of its own.</source>
        <translation>Jede Spalte in einem eigenen Diagramm zeigen.</translation>
    </message>
    <message>
        <source>Show all columns in one pane.</source>
        <translation>Alle Spalten in einem Diagramm zeigen.</translation>
    </message>
    <message>
        <source>Shows the columns of a CSV or TSV file over the first one, which holds numbers or dates and times in ISO form.</source>
        <translation>Zeigt die Spalten einer CSV- oder TSV-Datei über der ersten, die Zahlen oder Datum und Uhrzeit in ISO-Form enthält.</translation>
    </message>
    <message>
        <source>FILE</source>
        <translation>DATEI</translation>
    </message>
    <message>
        <source>The file to show.</source>
        <translation>Die Datei, die gezeigt wird.</translation>
    </message>
    <message>
        <source>[FILE]</source>
        <translation>[DATEI]</translation>
    </message>
    <message>
        <source>more than one file: %1</source>
        <translation>mehr als eine Datei: %1</translation>
    </message>
    <message>
        <source>--screenshot needs a file to show and a file to write</source>
        <translation>--screenshot braucht eine Datei zum Zeigen und eine zum Schreiben</translation>
    </message>
    <message>
        <source>--separate and --combine exclude each other</source>
        <translation>--separate und --combine schließen einander aus</translation>
    </message>
    <message>
        <source>there is no display; --screenshot writes a picture</source>
        <translation>es gibt keinen Bildschirm; --screenshot schreibt ein Bild</translation>
    </message>
    <message>
        <source>Time from sample to sample in milliseconds (250).</source>
        <translation>Zeit von Messwert zu Messwert in Millisekunden (250).</translation>
    </message>
    <message>
        <source>MS</source>
        <translation>MS</translation>
    </message>
    <message>
        <source>Width of the view in seconds (60, or as last time).</source>
        <translation>Breite der Ansicht in Sekunden (60 oder wie beim letzten Mal).</translation>
    </message>
    <message>
        <source>SECONDS</source>
        <translation>SEKUNDEN</translation>
    </message>
    <message>
        <source>Age at which samples go, in seconds (600).</source>
        <translation>Alter, in dem Messwerte entfallen, in Sekunden (600).</translation>
    </message>
    <message>
        <source>Show each curve in a pane of its own.</source>
        <translation>Jede Kurve in einem eigenen Diagramm zeigen.</translation>
    </message>
    <message>
        <source>End after so many seconds.</source>
        <translation>Nach so vielen Sekunden enden.</translation>
    </message>
    <message>
        <source>N</source>
        <translation>N</translation>
    </message>
    <message>
        <source>Write a picture of the window as PNG at that end.</source>
        <translation>Dann ein Bild des Fensters als PNG schreiben.</translation>
    </message>
    <message>
        <source>Write all samples to a table, which csvviewer shows.</source>
        <translation>Alle Messwerte in eine Tabelle schreiben, die csvviewer zeigt.</translation>
    </message>
    <message>
        <source>FILE.csv</source>
        <translation>DATEI.csv</translation>
    </message>
    <message>
        <source>Folder of the kernel&apos;s counters (/proc).</source>
        <translation>Ordner der Zähler des Kernels (/proc).</translation>
    </message>
    <message>
        <source>FOLDER</source>
        <translation>ORDNER</translation>
    </message>
    <message>
        <source>Shows what the machine is doing: processors, load, memory, network and disks.</source>
        <translation>Zeigt, was der Rechner tut: Prozessoren, Last, Speicher, Netz und Platten.</translation>
    </message>
    <message>
        <source>unknown argument: %1</source>
        <translation>unbekanntes Argument: %1</translation>
    </message>
    <message>
        <source>--%1 wants a whole number from %2 to %3, and not &quot;%4&quot;</source>
        <translation>--%1 erwartet eine ganze Zahl von %2 bis %3 und nicht „%4“</translation>
    </message>
    <message>
        <source>--keep must not be less than --window: the view would be half empty</source>
        <translation>--keep darf nicht kleiner als --window sein: die Ansicht wäre halb leer</translation>
    </message>
    <message>
        <source>--screenshot needs a file to write, and --seconds to say when</source>
        <translation>--screenshot braucht eine Datei zum Schreiben und --seconds für den Zeitpunkt</translation>
    </message>
    <message>
        <source>--record needs a file to write</source>
        <translation>--record braucht eine Datei zum Schreiben</translation>
    </message>
    <message>
        <source>there is no display; --screenshot writes a picture, --record a table</source>
        <translation>es gibt keinen Bildschirm; --screenshot schreibt ein Bild, --record eine Tabelle</translation>
    </message>
</context>
<context>
    <name>CsvTableBuilder</name>
    <message>
        <source>there is no row of values</source>
        <translation>es gibt keine Zeile mit Werten</translation>
    </message>
    <message>
        <source>there is only one column; wanted are X and values, separated by comma, semicolon or tab</source>
        <translation>es gibt nur eine Spalte; erwartet werden X und Werte, getrennt durch Komma, Semikolon oder Tabulator</translation>
    </message>
    <message>
        <source>Column %1</source>
        <translation>Spalte %1</translation>
    </message>
    <message>
        <source>cells in this row: %1, in the first: %2</source>
        <translation>Zellen in dieser Zeile: %1, in der ersten: %2</translation>
    </message>
    <message>
        <source>X is missing</source>
        <translation>X fehlt</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no date and time</source>
        <translation>„%1“ ist kein Datum mit Uhrzeit</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is neither a number nor a date and time</source>
        <translation>„%1“ ist weder eine Zahl noch ein Datum mit Uhrzeit</translation>
    </message>
    <message>
        <source>X is infinite</source>
        <translation>X ist unendlich</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is out of the range of numbers</source>
        <translation>„%1“ liegt außerhalb des Zahlenbereichs</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no number</source>
        <translation>„%1“ ist keine Zahl</translation>
    </message>
</context>
<context>
    <name>CsvTokenizer</name>
    <message>
        <source>text behind a quoted cell</source>
        <translation>Text hinter einer Zelle in Anführungszeichen</translation>
    </message>
    <message>
        <source>the quote is not closed</source>
        <translation>das Anführungszeichen wird nicht geschlossen</translation>
    </message>
    <message>
        <source>this is a binary file: it has a NUL byte here</source>
        <translation>das ist eine Binärdatei: hier steht ein NUL-Byte</translation>
    </message>
    <message>
        <source>the row is longer than %1 bytes; is a quote not closed?</source>
        <translation>die Zeile ist länger als %1 Bytes; fehlt ein schließendes Anführungszeichen?</translation>
    </message>
</context>
<context>
    <name>Monitor</name>
    <message>
        <source>there is nothing to show</source>
        <translation>es gibt nichts zu zeigen</translation>
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
        <translation>keine Zähler, die hier bekannt sind</translation>
    </message>
</context>
<context>
    <name>Quantity</name>
    <message>
        <source>CPU %</source>
        <translation>CPU %</translation>
    </message>
    <message>
        <source>CPU %1 %</source>
        <translation>CPU %1 %</translation>
    </message>
    <message>
        <source>Net in KiB/s</source>
        <translation>Netz empfangen KiB/s</translation>
    </message>
    <message>
        <source>Net out KiB/s</source>
        <translation>Netz senden KiB/s</translation>
    </message>
    <message>
        <source>Disk read KiB/s</source>
        <translation>Platte lesen KiB/s</translation>
    </message>
    <message>
        <source>Disk write KiB/s</source>
        <translation>Platte schreiben KiB/s</translation>
    </message>
    <message>
        <source>Load</source>
        <translation>Last</translation>
    </message>
    <message>
        <source>Memory MiB</source>
        <translation>Speicher MiB</translation>
    </message>
</context>
<context>
    <name>RecentFiles</name>
    <message>
        <source>Open &amp;recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>&amp;Clear list</source>
        <translation>Liste &amp;leeren</translation>
    </message>
</context>
<context>
    <name>Recorder</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
</context>
<context>
    <name>SampleWriter</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
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
        <translation>Ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>Re&amp;load</source>
        <translation>&amp;Neu laden</translation>
    </message>
    <message>
        <source>Reading %1</source>
        <translation>%1 wird gelesen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Tables (*.csv *.tsv *.txt);;All files (*)</source>
        <translation>Tabellen (*.csv *.tsv *.txt);;Alle Dateien (*)</translation>
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
        <translation>das ist keine Datei</translation>
    </message>
</context>
</TS>
