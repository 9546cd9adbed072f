<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>DzContentLibraryPane</name>
    <message>
        <source>Content folders</source>
        <translation>Inhaltsordner</translation>
    </message>
</context>
<context>
    <name>DzDFormPresetLoadOptionsDlg</name>
    <message>
        <source>&amp;Replace D-Formers of this name</source>
        <translation>D-Former dieses Namens &amp;ersetzen</translation>
    </message>
    <message>
        <source>D-Former Load Options</source>
        <translation>Ladeoptionen für D-Former</translation>
    </message>
    <message>
        <source>Removes those that deform the figure already; otherwise the new one is added.</source>
        <translation>Entfernt diejenigen, die die Figur bereits verformen; sonst kommt der neue hinzu.</translation>
    </message>
    <message>
        <source>Accept</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
</context>
<context>
    <name>DzDeleteAction</name>
    <message>
        <source>&amp;Delete Selected Items</source>
        <translation>Ausgewähltes &amp;löschen</translation>
    </message>
    <message>
        <source>Deletes the selected items from the scene.</source>
        <translation>Löscht, was ausgewählt ist, aus der Szene.</translation>
    </message>
</context>
<context>
    <name>DzFileContentTab</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Search files</source>
        <translation>Dateien suchen</translation>
    </message>
</context>
<context>
    <name>DzHierarchyPane</name>
    <message>
        <source>Nodes of the scene</source>
        <translation>Knoten der Szene</translation>
    </message>
    <message>
        <source>Node</source>
        <translation>Knoten</translation>
    </message>
    <message>
        <source>Visible</source>
        <translation>Sichtbar</translation>
    </message>
</context>
<context>
    <name>DzProductContentTab</name>
    <message>
        <source>Products</source>
        <translation>Produkte</translation>
    </message>
</context>
<context>
    <name>DzScriptPane</name>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Ausführen</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
</context>
<context>
    <name>DzSlider</name>
    <message>
        <source>The dial goes from %1 to %2.</source>
        <translation>Der Regler reicht von %1 bis %2.</translation>
    </message>
    <message>
        <source>Restore default</source>
        <translation>Vorgabe wiederherstellen</translation>
    </message>
</context>
<context>
    <name>DzSmartContentPane</name>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Products</source>
        <translation>Produkte</translation>
    </message>
</context>
<context>
    <name>MouseHelp</name>
    <message>
        <source>Left button</source>
        <translation>Linke Taste</translation>
    </message>
    <message>
        <source>Turns the view about the place that you hold</source>
        <translation>Dreht die Ansicht um die Stelle, die Sie halten</translation>
    </message>
    <message>
        <source>Middle or right button</source>
        <translation>Mittlere oder rechte Taste</translation>
    </message>
    <message>
        <source>Moves the view up, down and sideways</source>
        <translation>Verschiebt die Ansicht nach oben, unten und zur Seite</translation>
    </message>
    <message>
        <source>Wheel</source>
        <translation>Rad</translation>
    </message>
    <message>
        <source>Comes nearer to what is under the pointer, or goes farther away</source>
        <translation>Nähert sich dem, was unter dem Zeiger ist, oder entfernt sich davon</translation>
    </message>
    <message>
        <source>Click</source>
        <translation>Klick</translation>
    </message>
    <message>
        <source>Selects the figure under the pointer; with Ctrl, one more</source>
        <translation>Wählt die Figur unter dem Zeiger aus; mit Strg eine weitere</translation>
    </message>
    <message>
        <source>Double click</source>
        <translation>Doppelklick</translation>
    </message>
    <message>
        <source>Brings the figure under the pointer into view</source>
        <translation>Passt die Figur unter dem Zeiger in die Ansicht ein</translation>
    </message>
    <message>
        <source>Mouse and keys</source>
        <translation>Maus und Tasten</translation>
    </message>
</context>
<context>
    <name>desktop</name>
    <message>
        <source>Convert a Figure</source>
        <translation>Figur konvertieren</translation>
    </message>
    <message>
        <source>There is no figure in %1.</source>
        <translation>In %1 ist keine Figur.</translation>
    </message>
    <message>
        <source>Conversions come with the plug-in, which is not loaded.</source>
        <translation>Konvertierungen bringt das Plug-in mit, das nicht geladen ist.</translation>
    </message>
    <message>
        <source>Show New Morphs</source>
        <translation>Neue Morphs zeigen</translation>
    </message>
    <message>
        <source>Open Result</source>
        <translation>Ergebnis öffnen</translation>
    </message>
    <message>
        <source>The figure does not have %1. The library that the morphs were saved into may be none of your content folders.</source>
        <translation>Die Figur hat %1 nicht. Vielleicht gehört die Bibliothek, in der die Morphs gespeichert wurden, nicht zu Ihren Inhaltsordnern.</translation>
    </message>
    <message>
        <source>Make the Sample Library</source>
        <translation>Beispielbibliothek erstellen</translation>
    </message>
    <message>
        <source>Folder for the Sample Library</source>
        <translation>Ordner für die Beispielbibliothek</translation>
    </message>
    <message>
        <source>The library could not be written to %1: %2.</source>
        <translation>Die Bibliothek konnte nicht nach %1 geschrieben werden: %2.</translation>
    </message>
    <message>
        <source> and %1 more</source>
        <translation> und %1 weitere</translation>
    </message>
</context>
<context>
    <name>desktop::ChooseFiguresDialog</name>
    <message>
        <source>Figure to convert</source>
        <translation>Zu konvertierende Figur</translation>
    </message>
    <message>
        <source>Convert it to</source>
        <translation>Konvertieren nach</translation>
    </message>
    <message>
        <source>Convert a Figure</source>
        <translation>Figur konvertieren</translation>
    </message>
    <message>
        <source>&amp;Convert...</source>
        <translation>&amp;Konvertieren...</translation>
    </message>
    <message>
        <source>Looking for figures in the content folders...</source>
        <translation>In den Inhaltsordnern wird nach Figuren gesucht...</translation>
    </message>
    <message>
        <source>There is no content folder yet. File &gt; Content Folders... says where your figures are.</source>
        <translation>Es gibt noch keinen Inhaltsordner. Mit Datei &gt; Inhaltsordner... geben Sie an, wo Ihre Figuren sind.</translation>
    </message>
    <message>
        <source>The content folders have no Genesis 3, 8 or 8.1 figure.</source>
        <translation>In den Inhaltsordnern ist keine Figur der Art Genesis 3, 8 oder 8.1.</translation>
    </message>
    <message>
        <source>The content folders have no Genesis 9 figure.</source>
        <translation>In den Inhaltsordnern ist keine Figur der Art Genesis 9.</translation>
    </message>
    <message>
        <source>Both are loaded, and you are asked what to convert.</source>
        <translation>Beide werden geladen, und Sie werden gefragt, was konvertiert werden soll.</translation>
    </message>
    <message>
        <source>Choose one on each side.</source>
        <translation>Wählen Sie auf jeder Seite eine.</translation>
    </message>
</context>
<context>
    <name>desktop::ColorBar</name>
    <message>
        <source>Colours from 0 to %1 mm, from light to dark, and blue-green beyond</source>
        <translation>Farben von 0 bis %1 mm, von hell nach dunkel, und Blaugrün darüber</translation>
    </message>
    <message>
        <source>%1 mm</source>
        <translation>%1 mm</translation>
    </message>
</context>
<context>
    <name>desktop::ComparisonPanel</name>
    <message>
        <source>%1 mm</source>
        <translation>%1 mm</translation>
    </message>
    <message>
        <source>Mean %1, p95 %2, max %3</source>
        <translation>Mittel %1, P95 %2, Max. %3</translation>
    </message>
    <message>
        <source>Nothing lies beyond the scale.</source>
        <translation>Nichts liegt außerhalb der Skala.</translation>
    </message>
    <message>
        <source>%1 of %2 vertices lie beyond the scale, in blue-green.</source>
        <translation>%1 von %2 Eckpunkten liegen außerhalb der Skala (blaugrün).</translation>
    </message>
    <message>
        <source>%1 vertices could not be measured, in grey.</source>
        <translation>%1 Eckpunkte konnten nicht gemessen werden (grau).</translation>
    </message>
    <message>
        <source>Compared figures</source>
        <translation>Verglichene Figuren</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Ends the scale at a round number that hardly any place exceeds.</source>
        <translation>Beendet die Skala bei einer runden Zahl, die kaum eine Stelle überschreitet.</translation>
    </message>
    <message>
        <source>End of the scale</source>
        <translation>Ende der Skala</translation>
    </message>
    <message>
        <source> mm</source>
        <translation> mm</translation>
    </message>
    <message>
        <source>The difference could not be measured: %1.</source>
        <translation>Der Unterschied konnte nicht gemessen werden: %1.</translation>
    </message>
    <message>
        <source>There is nothing to measure.</source>
        <translation>Es gibt nichts zu messen.</translation>
    </message>
</context>
<context>
    <name>desktop::ComparisonView</name>
    <message>
        <source>&amp;Difference</source>
        <translation>&amp;Unterschied</translation>
    </message>
    <message>
        <source>Side &amp;by Side</source>
        <translation>&amp;Nebeneinander</translation>
    </message>
    <message>
        <source>The difference is being measured.</source>
        <translation>Der Unterschied wird gemessen.</translation>
    </message>
</context>
<context>
    <name>desktop::DesktopWindow</name>
    <message>
        <source>&amp;Window</source>
        <translation>&amp;Fenster</translation>
    </message>
    <message>
        <source>&amp;Log</source>
        <translation>&amp;Protokoll</translation>
    </message>
    <message>
        <source>There is no content folder %1.</source>
        <translation>Es gibt keinen Inhaltsordner %1.</translation>
    </message>
    <message>
        <source>Missing at the Start</source>
        <translation>Beim Start fehlt etwas</translation>
    </message>
    <message>
        <source>There is no plug-in folder %1.</source>
        <translation>Es gibt keinen Plug-in-Ordner %1.</translation>
    </message>
    <message>
        <source>The plug-in %1 could not be loaded: %2.</source>
        <translation>Das Plug-in %1 konnte nicht geladen werden: %2.</translation>
    </message>
    <message>
        <source>%1 is a folder, not a file.</source>
        <translation>%1 ist ein Ordner, keine Datei.</translation>
    </message>
    <message>
        <source>There is no file %1.</source>
        <translation>Es gibt keine Datei %1.</translation>
    </message>
    <message>
        <source>Make the Sample Library</source>
        <translation>Beispielbibliothek erstellen</translation>
    </message>
    <message>
        <source>The sample library is in %1, which is a content folder now. Convert a Figure finds its figures.</source>
        <translation>Die Beispielbibliothek ist in %1; der Ordner ist jetzt ein Inhaltsordner. Figur konvertieren findet ihre Figuren.</translation>
    </message>
    <message>
        <source>%1[*] — Gantrel</source>
        <translation>%1[*] — Gantrel</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <source>Open Recent</source>
        <translation>Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>There is no file %1 any more.</source>
        <translation>Die Datei %1 gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Choose File &gt; Content Folders to say where your figures are.</source>
        <translation>Geben Sie mit Datei &gt; Inhaltsordner an, wo Ihre Figuren sind.</translation>
    </message>
    <message>
        <source>Not everything could be kept for the next time.</source>
        <translation>Nicht alles konnte für das nächste Mal gespeichert werden.</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Gantrel Manual</source>
        <translation>Gantrel-Handbuch</translation>
    </message>
    <message>
        <source>The manual comes with the plug-in, which is not loaded.</source>
        <translation>Das Handbuch bringt das Plug-in mit, das nicht geladen ist.</translation>
    </message>
    <message>
        <source>About Gantrel</source>
        <translation>Über Gantrel</translation>
    </message>
    <message>
        <source>&lt;p&gt;&lt;b&gt;Gantrel %1&lt;/b&gt;&lt;/p&gt;&lt;p&gt;Shapes of older figure generations as morphs on Genesis 9, in a window of its own.&lt;/p&gt;</source>
        <translation>&lt;p&gt;&lt;b&gt;Gantrel %1&lt;/b&gt;&lt;/p&gt;&lt;p&gt;Formen älterer Figurengenerationen als Morphs auf Genesis 9, in einem eigenen Fenster.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Only .duf, .dsf and .obj files can be opened, not %1.</source>
        <translation>Nur Dateien mit .duf, .dsf und .obj können geöffnet werden, nicht %1.</translation>
    </message>
</context>
<context>
    <name>desktop::DifferenceWork</name>
    <message>
        <source>the work was cancelled</source>
        <translation>die Arbeit wurde abgebrochen</translation>
    </message>
</context>
<context>
    <name>desktop::FigureList</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Search: %1</source>
        <translation>Suchen: %1</translation>
    </message>
    <message>
        <source>Browse...</source>
        <translation>Durchsuchen...</translation>
    </message>
    <message>
        <source>Browse: %1</source>
        <translation>Durchsuchen: %1</translation>
    </message>
    <message>
        <source>Figures (*.duf *.dsf);;All files (*)</source>
        <translation>Figuren (*.duf *.dsf);;Alle Dateien (*)</translation>
    </message>
</context>
<context>
    <name>desktop::FoldersDialog</name>
    <message>
        <source>Content Folders</source>
        <translation>Inhaltsordner</translation>
    </message>
</context>
<context>
    <name>desktop::FoldersEditor</name>
    <message>
        <source>Figures and what belongs to them are looked for in these folders. The first one that has a file is taken.</source>
        <translation>In diesen Ordnern wird nach Figuren und allem gesucht, was zu ihnen gehört. Der erste, der eine Datei hat, wird genommen.</translation>
    </message>
    <message>
        <source>Content folders</source>
        <translation>Inhaltsordner</translation>
    </message>
    <message>
        <source>&amp;Add...</source>
        <translation>&amp;Hinzufügen...</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Move &amp;Up</source>
        <translation>Nach &amp;oben</translation>
    </message>
    <message>
        <source>Move &amp;Down</source>
        <translation>Nach &amp;unten</translation>
    </message>
    <message>
        <source>Add Content Folder</source>
        <translation>Inhaltsordner hinzufügen</translation>
    </message>
</context>
<context>
    <name>desktop::Job</name>
    <message>
        <source>&quot;%1&quot; has a semicolon, which such a table has between values; a name that ends with .json makes a table that can hold it</source>
        <translation>„%1“ enthält ein Semikolon, das in einer solchen Tabelle zwischen den Werten steht; ein Name mit der Endung .json ergibt eine Tabelle, die es aufnehmen kann</translation>
    </message>
</context>
<context>
    <name>desktop::JobDialog</name>
    <message>
        <source>What Rows Leave Open</source>
        <translation>Was die Zeilen offen lassen</translation>
    </message>
    <message>
        <source>Conversion Settings</source>
        <translation>Konvertierungseinstellungen</translation>
    </message>
    <message numerus="yes">
        <source>%n figures</source>
        <translation>
            <numerusform>%n Figur</numerusform>
            <numerusform>%n Figuren</numerusform>
        </translation>
    </message>
    <message>
        <source>Source:</source>
        <translation>Quelle:</translation>
    </message>
    <message>
        <source>&amp;Target:</source>
        <translation>&amp;Ziel:</translation>
    </message>
    <message>
        <source>Browse for the target</source>
        <translation>Nach dem Ziel suchen</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>That of the figure</source>
        <translation>Der der Figur</translation>
    </message>
    <message>
        <source>Browse...</source>
        <translation>Durchsuchen...</translation>
    </message>
    <message>
        <source>&amp;Full figure</source>
        <translation>&amp;Ganze Figur</translation>
    </message>
    <message>
        <source>&amp;Head</source>
        <translation>&amp;Kopf</translation>
    </message>
    <message>
        <source>&amp;Body</source>
        <translation>K&amp;örper</translation>
    </message>
    <message>
        <source>Morphs:</source>
        <translation>Morphs:</translation>
    </message>
    <message>
        <source>Base</source>
        <translation>Basis</translation>
    </message>
    <message>
        <source>Subdivided</source>
        <translation>Unterteilt</translation>
    </message>
    <message>
        <source>&amp;Resolution:</source>
        <translation>A&amp;uflösung:</translation>
    </message>
    <message>
        <source>As the source&apos;s file says</source>
        <translation>Wie in der Datei der Quelle</translation>
    </message>
    <message>
        <source>Subdivision &amp;level:</source>
        <translation>Unterteilungs&amp;stufe:</translation>
    </message>
    <message>
        <source>&amp;Joints follow the new shape</source>
        <translation>Ge&amp;lenke folgen der neuen Form</translation>
    </message>
    <message>
        <source>Register the target&apos;s neutral sh&amp;ape first</source>
        <translation>Zuerst die neutrale &amp;Form des Ziels registrieren</translation>
    </message>
    <message>
        <source>&amp;Save into library:</source>
        <translation>In &amp;Bibliothek speichern:</translation>
    </message>
    <message>
        <source>Browse for the library</source>
        <translation>Nach der Bibliothek suchen</translation>
    </message>
    <message>
        <source>&amp;Vendor:</source>
        <translation>&amp;Hersteller:</translation>
    </message>
    <message>
        <source>&amp;Product:</source>
        <translation>&amp;Produkt:</translation>
    </message>
    <message>
        <source>&amp;Compress files</source>
        <translation>&amp;Dateien komprimieren</translation>
    </message>
    <message>
        <source>Replace saved &amp;morphs of the same name</source>
        <translation>Gespeicherte &amp;Morphs gleichen Namens ersetzen</translation>
    </message>
    <message>
        <source>Target</source>
        <translation>Ziel</translation>
    </message>
    <message>
        <source>Figures (*.duf *.dsf);;All files (*)</source>
        <translation>Figuren (*.duf *.dsf);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Library for the Morphs</source>
        <translation>Bibliothek für die Morphs</translation>
    </message>
    <message>
        <source>Choose the target, a Genesis 9 figure&apos;s file.</source>
        <translation>Wählen Sie das Ziel, die Datei einer Genesis-9-Figur.</translation>
    </message>
    <message>
        <source>Choose at least one morph.</source>
        <translation>Wählen Sie mindestens einen Morph.</translation>
    </message>
    <message>
        <source>Choose the library that the morphs are saved into.</source>
        <translation>Wählen Sie die Bibliothek, in der die Morphs gespeichert werden.</translation>
    </message>
    <message>
        <source>Give vendor and product, which name the folders of the saved morphs.</source>
        <translation>Geben Sie Hersteller und Produkt an; nach ihnen heißen die Ordner der gespeicherten Morphs.</translation>
    </message>
    <message>
        <source>Name=value, each on a line, such as Smile=50%</source>
        <translation>Name=Wert, je einer auf einer Zeile, etwa Smile=50%</translation>
    </message>
    <message>
        <source>Source&apos;s &amp;dials:</source>
        <translation>&amp;Regler der Quelle:</translation>
    </message>
    <message>
        <source>“%1” sets no dial: give its name and a value, such as Smile=50%.</source>
        <translation>„%1“ stellt keinen Regler: Geben Sie Namen und Wert an, etwa Smile=50%.</translation>
    </message>
</context>
<context>
    <name>desktop::JobModel</name>
    <message>
        <source>Running</source>
        <translation>Läuft</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Fehlgeschlagen</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>Wartet</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>Target</source>
        <translation>Ziel</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>Jobs</source>
        <translation>Aufträge</translation>
    </message>
</context>
<context>
    <name>desktop::JobProcess</name>
    <message>
        <source>%1 cannot be started: %2.</source>
        <translation>%1 kann nicht gestartet werden: %2.</translation>
    </message>
    <message>
        <source>The process that converts came to an unexpected end.</source>
        <translation>Der Prozess, der konvertiert, wurde unerwartet beendet.</translation>
    </message>
    <message>
        <source>The process that converts said nothing.</source>
        <translation>Der Prozess, der konvertiert, hat nichts gemeldet.</translation>
    </message>
    <message>
        <source>It was done before, and nothing has changed since.</source>
        <translation>Das wurde schon früher erledigt, und seither hat sich nichts geändert.</translation>
    </message>
    <message>
        <source>It was stopped.</source>
        <translation>Die Konvertierung wurde angehalten.</translation>
    </message>
    <message>
        <source>%1 was left out: %2.</source>
        <translation>%1 wurde ausgelassen: %2.</translation>
    </message>
    <message>
        <source>Saved before that: %1.</source>
        <translation>Davor gespeichert: %1.</translation>
    </message>
</context>
<context>
    <name>desktop::JobQueue</name>
    <message>
        <source>The program &quot;gantrel&quot;, which converts, is not beside this one.</source>
        <translation>Das Programm „gantrel“, das konvertiert, liegt nicht neben diesem.</translation>
    </message>
    <message>
        <source>The table %1 has changed since it was opened; open it again.</source>
        <translation>Die Tabelle %1 hat sich geändert, seit sie geöffnet wurde; öffnen Sie sie erneut.</translation>
    </message>
    <message>
        <source>The job cannot be handed on: %1.</source>
        <translation>Der Auftrag kann nicht weitergegeben werden: %1.</translation>
    </message>
</context>
<context>
    <name>desktop::JobStore</name>
    <message>
        <source>The list and its reports are kept in %1.</source>
        <translation>Die Liste und ihre Berichte werden in %1 aufbewahrt.</translation>
    </message>
    <message>
        <source>Another window has the list that is kept; this one goes with the program.</source>
        <translation>Ein anderes Fenster hat die Liste, die aufbewahrt wird; diese hier endet mit dem Programm.</translation>
    </message>
    <message>
        <source>Nothing can be kept in %1; the list goes with the program.</source>
        <translation>In %1 kann nichts aufbewahrt werden; die Liste endet mit dem Programm.</translation>
    </message>
    <message>
        <source>The list of jobs could not be read: %1. It is kept as %2.</source>
        <translation>Die Liste der Aufträge konnte nicht gelesen werden: %1. Sie bleibt als %2 erhalten.</translation>
    </message>
    <message>
        <source>The list of jobs cannot be kept: %1.</source>
        <translation>Die Liste der Aufträge kann nicht aufbewahrt werden: %1.</translation>
    </message>
    <message>
        <source>The list of jobs could not be read: %1. It cannot be put aside, and the next change replaces it.</source>
        <translation>Die Liste der Aufträge konnte nicht gelesen werden: %1. Sie lässt sich nicht beiseitelegen, und die nächste Änderung ersetzt sie.</translation>
    </message>
</context>
<context>
    <name>desktop::JobsWindow</name>
    <message>
        <source>Conversion Jobs</source>
        <translation>Konvertierungsaufträge</translation>
    </message>
    <message>
        <source>&amp;Add...</source>
        <translation>&amp;Hinzufügen...</translation>
    </message>
    <message>
        <source>&amp;Open Table...</source>
        <translation>Tabelle &amp;öffnen...</translation>
    </message>
    <message>
        <source>Save as &amp;Table...</source>
        <translation>Als &amp;Tabelle speichern...</translation>
    </message>
    <message>
        <source>S&amp;ettings...</source>
        <translation>&amp;Einstellungen...</translation>
    </message>
    <message>
        <source>Re&amp;move</source>
        <translation>Entfe&amp;rnen</translation>
    </message>
    <message>
        <source>Show &amp;Report</source>
        <translation>&amp;Bericht zeigen</translation>
    </message>
    <message>
        <source>Open Res&amp;ult</source>
        <translation>Er&amp;gebnis öffnen</translation>
    </message>
    <message>
        <source>&amp;Start</source>
        <translation>&amp;Starten</translation>
    </message>
    <message>
        <source>Stop After This O&amp;ne</source>
        <translation>&amp;Nach diesem anhalten</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>Retr&amp;y Failed</source>
        <translation>&amp;Fehlgeschlagene wiederholen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>A conversion is running. It is stopped when you quit; the others stay in the list.</source>
        <translation>Eine Konvertierung läuft. Sie wird angehalten, wenn Sie das Programm beenden; die anderen bleiben in der Liste.</translation>
    </message>
    <message>
        <source>Stop and &amp;Quit</source>
        <translation>Anhalten und &amp;beenden</translation>
    </message>
    <message>
        <source>Conversions are running. Keep them running?</source>
        <translation>Es laufen Konvertierungen. Sollen sie weiterlaufen?</translation>
    </message>
    <message>
        <source>&amp;Keep Running</source>
        <translation>&amp;Weiterlaufen lassen</translation>
    </message>
    <message>
        <source>&amp;Stop Them</source>
        <translation>A&amp;nhalten</translation>
    </message>
    <message>
        <source>Figures to Convert</source>
        <translation>Zu konvertierende Figuren</translation>
    </message>
    <message>
        <source>Figures (*.duf *.dsf);;All files (*)</source>
        <translation>Figuren (*.duf *.dsf);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Open a Table of Conversions</source>
        <translation>Tabelle mit Konvertierungen öffnen</translation>
    </message>
    <message>
        <source>Tables (*.csv *.json);;All files (*)</source>
        <translation>Tabellen (*.csv *.json);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>The program &quot;gantrel&quot;, which converts, is not beside this one.</source>
        <translation>Das Programm „gantrel“, das konvertiert, liegt nicht neben diesem.</translation>
    </message>
    <message>
        <source>The table %1 cannot be worked on.

%2</source>
        <translation>Die Tabelle %1 kann nicht bearbeitet werden.

%2</translation>
    </message>
    <message>
        <source>&amp;Say What Rows Leave Open...</source>
        <translation>An&amp;geben, was die Zeilen offen lassen...</translation>
    </message>
    <message>
        <source>Save as Table</source>
        <translation>Als Tabelle speichern</translation>
    </message>
    <message>
        <source>Tables (*.csv *.json)</source>
        <translation>Tabellen (*.csv *.json)</translation>
    </message>
    <message>
        <source>The table could not be written: %1.</source>
        <translation>Die Tabelle konnte nicht geschrieben werden: %1.</translation>
    </message>
    <message>
        <source>There are no jobs yet: add figures, open a table, or drop files here.</source>
        <translation>Noch keine Aufträge: Fügen Sie Figuren hinzu, öffnen Sie eine Tabelle oder ziehen Sie Dateien hierher.</translation>
    </message>
    <message>
        <source>%1 of %2 done</source>
        <translation>%1 von %2 fertig</translation>
    </message>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n fehlgeschlagen</numerusform>
            <numerusform>%n fehlgeschlagen</numerusform>
        </translation>
    </message>
    <message>
        <source>stopping after this one</source>
        <translation>wird nach diesem angehalten</translation>
    </message>
    <message>
        <source>This is a row of %1; change it there.</source>
        <translation>Dies ist eine Zeile von %1; ändern Sie sie dort.</translation>
    </message>
    <message>
        <source>The job has begun meanwhile; its settings are as they were.</source>
        <translation>Der Auftrag hat inzwischen begonnen; seine Einstellungen sind wie zuvor.</translation>
    </message>
    <message>
        <source>What became of the job</source>
        <translation>Was aus dem Auftrag geworden ist</translation>
    </message>
    <message>
        <source>Only figures (.duf, .dsf) and tables (.csv, .json) can be added, not %1.</source>
        <translation>Nur Figuren (.duf, .dsf) und Tabellen (.csv, .json) können hinzugefügt werden, nicht %1.</translation>
    </message>
</context>
<context>
    <name>desktop::Languages</name>
    <message>
        <source>The language could not be kept: %1.</source>
        <translation>Die Sprache konnte nicht gespeichert werden: %1.</translation>
    </message>
</context>
<context>
    <name>desktop::LogWindow</name>
    <message>
        <source>Note</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Severity</source>
        <translation>Schwere</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Asset</source>
        <translation>Asset</translation>
    </message>
    <message>
        <source>What</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>C&amp;opy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>&amp;Leeren</translation>
    </message>
</context>
<context>
    <name>desktop::LookMenu</name>
    <message>
        <source>&amp;Look</source>
        <translation>Auss&amp;ehen</translation>
    </message>
    <message>
        <source>&amp;Dark</source>
        <translation>&amp;Dunkel</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>&amp;Hell</translation>
    </message>
    <message>
        <source>&amp;System</source>
        <translation>&amp;System</translation>
    </message>
</context>
<context>
    <name>desktop::MenuAction</name>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>Begins with an empty scene.</source>
        <translation>Beginnt mit einer leeren Szene.</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>&amp;Öffnen...</translation>
    </message>
    <message>
        <source>Opens a scene, or adds a figure to the present one.</source>
        <translation>Öffnet eine Szene oder fügt der jetzigen eine Figur hinzu.</translation>
    </message>
    <message>
        <source>&amp;Convert a Figure...</source>
        <translation>Figur &amp;konvertieren...</translation>
    </message>
    <message>
        <source>Chooses a figure and the one that gets its shape, and loads both.</source>
        <translation>Wählt eine Figur und diejenige, die ihre Form bekommt, und lädt beide.</translation>
    </message>
    <message>
        <source>Conversion &amp;Jobs...</source>
        <translation>Konvertierungs&amp;aufträge...</translation>
    </message>
    <message>
        <source>Converts many figures, one after the other, beside other work.</source>
        <translation>Konvertiert viele Figuren nacheinander, neben anderer Arbeit.</translation>
    </message>
    <message>
        <source>&amp;Merge...</source>
        <translation>&amp;Zusammenführen...</translation>
    </message>
    <message>
        <source>Adds what a file holds to the scene.</source>
        <translation>Fügt der Szene hinzu, was eine Datei enthält.</translation>
    </message>
    <message>
        <source>&amp;Save Scene</source>
        <translation>Szene &amp;speichern</translation>
    </message>
    <message>
        <source>Writes the scene to its file.</source>
        <translation>Schreibt die Szene in ihre Datei.</translation>
    </message>
    <message>
        <source>Save Scene &amp;As...</source>
        <translation>Szene speichern &amp;unter...</translation>
    </message>
    <message>
        <source>Writes the scene to another file.</source>
        <translation>Schreibt die Szene in eine andere Datei.</translation>
    </message>
    <message>
        <source>Save Mor&amp;phs...</source>
        <translation>&amp;Morphs speichern...</translation>
    </message>
    <message>
        <source>Writes new morphs to files of their own.</source>
        <translation>Schreibt neue Morphs in eigene Dateien.</translation>
    </message>
    <message>
        <source>Content &amp;Folders...</source>
        <translation>&amp;Inhaltsordner...</translation>
    </message>
    <message>
        <source>Chooses where figures are looked for.</source>
        <translation>Wählt, wo nach Figuren gesucht wird.</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>Ends the program.</source>
        <translation>Beendet das Programm.</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>Takes the last step back.</source>
        <translation>Nimmt den letzten Schritt zurück.</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederherstellen</translation>
    </message>
    <message>
        <source>Does again what was taken back.</source>
        <translation>Wiederholt, was zurückgenommen wurde.</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Alles auswählen</translation>
    </message>
    <message>
        <source>Selects every figure and prop.</source>
        <translation>Wählt alle Figuren und Gegenstände aus.</translation>
    </message>
    <message>
        <source>Select &amp;None</source>
        <translation>&amp;Nichts auswählen</translation>
    </message>
    <message>
        <source>Selects nothing.</source>
        <translation>Wählt nichts aus.</translation>
    </message>
    <message>
        <source>&amp;Preferences...</source>
        <translation>&amp;Einstellungen...</translation>
    </message>
    <message>
        <source>Content folders, author, units, memory, threads and language.</source>
        <translation>Inhaltsordner, Autor, Einheiten, Speicher, Threads und Sprache.</translation>
    </message>
    <message>
        <source>Gantrel &amp;Manual</source>
        <translation>&amp;Gantrel-Handbuch</translation>
    </message>
    <message>
        <source>Opens the manual.</source>
        <translation>Öffnet das Handbuch.</translation>
    </message>
    <message>
        <source>&amp;About Gantrel</source>
        <translation>&amp;Über Gantrel</translation>
    </message>
    <message>
        <source>Tells what this is.</source>
        <translation>Sagt, was dies ist.</translation>
    </message>
    <message>
        <source>&amp;Joints Follow New Morphs</source>
        <translation>&amp;Gelenke folgen neuen Morphs</translation>
    </message>
    <message>
        <source>Lets a figure bend in the right places with the shape that it is given.</source>
        <translation>Lässt eine Figur mit der Form, die sie bekommt, an den richtigen Stellen beugen.</translation>
    </message>
</context>
<context>
    <name>desktop::PreferencesDialog</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>Reset to &amp;Defaults</source>
        <translation>Auf &amp;Vorgaben zurücksetzen</translation>
    </message>
    <message>
        <source>The page that is shown</source>
        <translation>Die gezeigte Seite</translation>
    </message>
    <message>
        <source>Content Folders</source>
        <translation>Inhaltsordner</translation>
    </message>
    <message>
        <source>Author</source>
        <translation>Autor</translation>
    </message>
    <message>
        <source>Files that you save name their author. New morphs are saved under this name too, unless you give another vendor there.</source>
        <translation>Dateien, die Sie speichern, nennen ihren Autor. Auch neue Morphs werden unter diesem Namen gespeichert, wenn Sie dort keinen anderen Hersteller angeben.</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>&amp;E-mail:</source>
        <translation>&amp;E-Mail:</translation>
    </message>
    <message>
        <source>&amp;Web site:</source>
        <translation>&amp;Webseite:</translation>
    </message>
    <message>
        <source>Units</source>
        <translation>Einheiten</translation>
    </message>
    <message>
        <source>Dials show lengths in this unit, and take numbers without a unit in it. Files and morphs stay as they are.</source>
        <translation>Regler zeigen Längen in dieser Einheit und verstehen Zahlen ohne Einheit so. Dateien und Morphs bleiben, wie sie sind.</translation>
    </message>
    <message>
        <source>Centimetres</source>
        <translation>Zentimeter</translation>
    </message>
    <message>
        <source>Metres</source>
        <translation>Meter</translation>
    </message>
    <message>
        <source>Inches</source>
        <translation>Zoll</translation>
    </message>
    <message>
        <source>&amp;Lengths:</source>
        <translation>&amp;Längen:</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>Speicher</translation>
    </message>
    <message>
        <source>Pictures that are drawn of figures are kept on the disk. When there is no more room, those that were used longest ago go.</source>
        <translation>Bilder, die von Figuren gezeichnet werden, bleiben auf der Festplatte. Wenn der Platz nicht mehr reicht, weichen die am längsten nicht benutzten.</translation>
    </message>
    <message>
        <source> MiB</source>
        <translation> MiB</translation>
    </message>
    <message>
        <source>&amp;Pictures at most:</source>
        <translation>&amp;Bilder höchstens:</translation>
    </message>
    <message>
        <source>Threads</source>
        <translation>Threads</translation>
    </message>
    <message>
        <source>How many processors conversions and drawing may keep busy. This computer has %1.</source>
        <translation>Wie viele Prozessoren Konvertieren und Zeichnen beschäftigen dürfen. Dieser Rechner hat %1.</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>P&amp;rocessors:</source>
        <translation>&amp;Prozessoren:</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>The language of windows and messages. It holds from the next start of Gantrel.</source>
        <translation>Die Sprache von Fenstern und Meldungen. Sie gilt ab dem nächsten Start von Gantrel.</translation>
    </message>
    <message>
        <source>System</source>
        <translation>System</translation>
    </message>
    <message>
        <source>&amp;Language:</source>
        <translation>&amp;Sprache:</translation>
    </message>
    <message>
        <source>%1 is set in the environment, which goes before what is chosen here.</source>
        <translation>%1 ist in der Umgebung gesetzt und geht dem vor, was hier gewählt wird.</translation>
    </message>
    <message>
        <source>Look</source>
        <translation>Aussehen</translation>
    </message>
    <message>
        <source>The colours of all windows. System takes those that are closer to the desktop&apos;s own.</source>
        <translation>Die Farben aller Fenster. System nimmt die, die denen der Arbeitsfläche näher sind.</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>&amp;Colours:</source>
        <translation>&amp;Farben:</translation>
    </message>
    <message>
        <source>Steps that can be undone are kept in memory. Those beyond go, the oldest first; the last one stays.</source>
        <translation>Schritte, die rückgängig zu machen sind, bleiben im Speicher. Was darüber geht, fällt weg, das Älteste zuerst; der letzte Schritt bleibt.</translation>
    </message>
    <message>
        <source>&amp;Steps at most:</source>
        <translation>&amp;Schritte höchstens:</translation>
    </message>
</context>
<context>
    <name>desktop::RecentFilesMenu</name>
    <message>
        <source>Open &amp;Recent</source>
        <translation>Zu&amp;letzt geöffnet</translation>
    </message>
    <message>
        <source>&amp;Clear List</source>
        <translation>Liste &amp;leeren</translation>
    </message>
</context>
<context>
    <name>desktop::RigFollower</name>
    <message>
        <source>Joints Follow New Morphs</source>
        <translation>Gelenke folgen neuen Morphs</translation>
    </message>
    <message>
        <source>The joints of %1 do not follow: %2.</source>
        <translation>Die Gelenke von %1 folgen nicht: %2.</translation>
    </message>
</context>
<context>
    <name>desktop::SaveMorphsDialog</name>
    <message>
        <source>C&amp;ompress files</source>
        <translation>&amp;Dateien komprimieren</translation>
    </message>
    <message>
        <source>Save Morphs</source>
        <translation>Morphs speichern</translation>
    </message>
    <message>
        <source>These morphs are in no file of their own. Once they are saved, every figure of the same kind that is loaded from then on has them.</source>
        <translation>Diese Morphs sind in keiner eigenen Datei. Sobald sie gespeichert sind, hat sie jede Figur derselben Art, die von da an geladen wird.</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>A morph of %1</source>
        <translation>Ein Morph von %1</translation>
    </message>
    <message>
        <source>Content &amp;library:</source>
        <translation>Inhalts&amp;bibliothek:</translation>
    </message>
    <message>
        <source>&amp;Vendor name:</source>
        <translation>&amp;Herstellername:</translation>
    </message>
    <message>
        <source>&amp;Product name:</source>
        <translation>&amp;Produktname:</translation>
    </message>
    <message>
        <source>Needed to save</source>
        <translation>Zum Speichern nötig</translation>
    </message>
    <message>
        <source>The morphs could not be saved: %1</source>
        <translation>Die Morphs konnten nicht gespeichert werden: %1</translation>
    </message>
</context>
<context>
    <name>desktop::SceneFiles</name>
    <message>
        <source>Save Scene</source>
        <translation>Szene speichern</translation>
    </message>
    <message>
        <source>&amp;Overwrite</source>
        <translation>&amp;Überschreiben</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Speichern &amp;unter...</translation>
    </message>
    <message>
        <source>Unsaved Scene</source>
        <translation>Nicht gespeicherte Szene</translation>
    </message>
    <message>
        <source>Unsaved Morphs</source>
        <translation>Nicht gespeicherte Morphs</translation>
    </message>
    <message>
        <source>The scene has been changed. Would you like to save it?</source>
        <translation>Die Szene wurde geändert. Möchten Sie sie speichern?</translation>
    </message>
    <message>
        <source>New morphs are not saved. Would you like to save them?</source>
        <translation>Neue Morphs sind nicht gespeichert. Möchten Sie sie speichern?</translation>
    </message>
    <message>
        <source>Morphs in no file of their own: %1.</source>
        <translation>Morphs ohne eigene Datei: %1.</translation>
    </message>
    <message>
        <source>Save &amp;Morphs...</source>
        <translation>&amp;Morphs speichern...</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Merge</source>
        <translation>Zusammenführen</translation>
    </message>
    <message>
        <source>Scenes and figures (*.duf *.dsf);;Meshes (*.obj);;All files (*)</source>
        <translation>Szenen und Figuren (*.duf *.dsf);;Netze (*.obj);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Save Scene As</source>
        <translation>Szene speichern unter</translation>
    </message>
    <message>
        <source>Scenes (*.duf)</source>
        <translation>Szenen (*.duf)</translation>
    </message>
    <message>
        <source>The file %1 is there already. Would you like to replace it?</source>
        <translation>Die Datei %1 gibt es schon. Möchten Sie sie ersetzen?</translation>
    </message>
    <message>
        <source>The file %1 has been changed by another program. Saving would lose these changes.</source>
        <translation>Die Datei %1 wurde von einem anderen Programm geändert. Beim Speichern gingen diese Änderungen verloren.</translation>
    </message>
    <message>
        <source>Not everything in %1 could be read, and saving would lose the rest:

%2</source>
        <translation>Nicht alles in %1 konnte gelesen werden, und beim Speichern ginge der Rest verloren:

%2</translation>
    </message>
    <message>
        <source>The scene is empty: there is nothing to save.</source>
        <translation>Die Szene ist leer: Es gibt nichts zu speichern.</translation>
    </message>
    <message>
        <source>The scene could not be saved as %1: %2</source>
        <translation>Die Szene konnte nicht als %1 gespeichert werden: %2</translation>
    </message>
    <message>
        <source>Save Morphs</source>
        <translation>Morphs speichern</translation>
    </message>
    <message>
        <source>Every morph is in a file of its own.</source>
        <translation>Jeder Morph ist in einer eigenen Datei.</translation>
    </message>
    <message>
        <source>Saved to %1: %2.</source>
        <translation>In %1 gespeichert: %2.</translation>
    </message>
</context>
<context>
    <name>desktop::StandingRoom</name>
    <message>
        <source>%1 m</source>
        <translation>%1 m</translation>
    </message>
    <message>
        <source>%1 in</source>
        <translation>%1 Zoll</translation>
    </message>
    <message>
        <source>%1 cm</source>
        <translation>%1 cm</translation>
    </message>
    <message>
        <source>was put %1 to the right, beside the figure that stood there</source>
        <translation>wurde %1 nach rechts gestellt, neben die Figur, die dort stand</translation>
    </message>
</context>
<context>
    <name>desktop::StartPage</name>
    <message>
        <source>&amp;Convert a Figure...</source>
        <translation>Figur &amp;konvertieren...</translation>
    </message>
    <message>
        <source>Choose a figure and the Genesis 9 that is to get its shape.</source>
        <translation>Wählen Sie eine Figur und die Genesis 9, die ihre Form bekommen soll.</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>&amp;Öffnen...</translation>
    </message>
    <message>
        <source>Open a scene or a figure from its file.</source>
        <translation>Öffnen Sie eine Szene oder eine Figur aus ihrer Datei.</translation>
    </message>
    <message>
        <source>Make the &amp;Sample Library...</source>
        <translation>Be&amp;ispielbibliothek erstellen...</translation>
    </message>
    <message>
        <source>Figures to try everything with, in a folder of your choice.</source>
        <translation>Figuren, um alles auszuprobieren, in einem Ordner Ihrer Wahl.</translation>
    </message>
    <message>
        <source>&amp;Manual</source>
        <translation>Handbu&amp;ch</translation>
    </message>
    <message>
        <source>Read how all of this is used.</source>
        <translation>Lesen Sie, wie man das alles benutzt.</translation>
    </message>
    <message>
        <source>Start page</source>
        <translation>Startseite</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>&amp;Recent Files</source>
        <translation>&amp;Zuletzt verwendet</translation>
    </message>
    <message>
        <source>Recent files</source>
        <translation>Zuletzt verwendete Dateien</translation>
    </message>
</context>
<context>
    <name>desktop::ToolBar</name>
    <message>
        <source>Tool Bar</source>
        <translation>Werkzeugleiste</translation>
    </message>
    <message>
        <source>Tool bar</source>
        <translation>Werkzeugleiste</translation>
    </message>
    <message>
        <source>&amp;Tool Bar</source>
        <translation>&amp;Werkzeugleiste</translation>
    </message>
</context>
<context>
    <name>desktop::UndoMenu</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Undo %1</source>
        <translation>&amp;Rückgängig: %1</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederherstellen</translation>
    </message>
    <message>
        <source>&amp;Redo %1</source>
        <translation>&amp;Wiederherstellen: %1</translation>
    </message>
    <message>
        <source>Cannot be undone: %1, and what was done before it.</source>
        <translation>Nicht rückgängig zu machen: %1, und was davor getan wurde.</translation>
    </message>
</context>
<context>
    <name>desktop::UnsavedNotice</name>
    <message>
        <source>Not saved yet: %1. File &gt; Save Morphs... saves new morphs.</source>
        <translation>Noch nicht gespeichert: %1. Datei &gt; Morphs speichern... speichert neue Morphs.</translation>
    </message>
</context>
<context>
    <name>desktop::ViewMenu</name>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>Draw Style</source>
        <translation>Darstellung</translation>
    </message>
    <message>
        <source>Frame &amp;All</source>
        <translation>&amp;Alles einpassen</translation>
    </message>
    <message>
        <source>&amp;Frame Selection</source>
        <translation>Aus&amp;wahl einpassen</translation>
    </message>
    <message>
        <source>&amp;Ground Grid</source>
        <translation>&amp;Bodenraster</translation>
    </message>
    <message>
        <source>View B&amp;uttons</source>
        <translation>&amp;Schaltflächen der Ansicht</translation>
    </message>
    <message>
        <source>&amp;Mouse and Keys</source>
        <translation>&amp;Maus und Tasten</translation>
    </message>
</context>
<context>
    <name>desktop::ViewpointsMenu</name>
    <message>
        <source>&amp;Front</source>
        <translation>&amp;Vorne</translation>
    </message>
    <message>
        <source>View from the front</source>
        <translation>Ansicht von vorne</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>&amp;Hinten</translation>
    </message>
    <message>
        <source>View from the back</source>
        <translation>Ansicht von hinten</translation>
    </message>
    <message>
        <source>&amp;Left</source>
        <translation>&amp;Links</translation>
    </message>
    <message>
        <source>View from the left</source>
        <translation>Ansicht von links</translation>
    </message>
    <message>
        <source>&amp;Right</source>
        <translation>&amp;Rechts</translation>
    </message>
    <message>
        <source>View from the right</source>
        <translation>Ansicht von rechts</translation>
    </message>
    <message>
        <source>&amp;Top</source>
        <translation>&amp;Oben</translation>
    </message>
    <message>
        <source>View from the top</source>
        <translation>Ansicht von oben</translation>
    </message>
    <message>
        <source>T&amp;hree-Quarter</source>
        <translation>&amp;Dreiviertel</translation>
    </message>
    <message>
        <source>View from between front and right</source>
        <translation>Ansicht von schräg vorne rechts</translation>
    </message>
    <message>
        <source>Fa&amp;ce</source>
        <translation>&amp;Gesicht</translation>
    </message>
    <message>
        <source>View of the face</source>
        <translation>Ansicht des Gesichts</translation>
    </message>
    <message>
        <source>&amp;View From</source>
        <translation>Ansicht &amp;von</translation>
    </message>
    <message>
        <source>Views</source>
        <translation>Ansichten</translation>
    </message>
</context>
<context>
    <name>openhost::AssetList</name>
    <message>
        <source>Favorite</source>
        <translation>Favorit</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Merge into Scene</source>
        <translation>Mit der Szene zusammenführen</translation>
    </message>
    <message>
        <source>Show Folder</source>
        <translation>Ordner zeigen</translation>
    </message>
</context>
<context>
    <name>openhost::DialMenu</name>
    <message>
        <source>&amp;Changed Dials Only</source>
        <translation>Nur &amp;geänderte Regler</translation>
    </message>
    <message>
        <source>&amp;Memorize Shown Dials</source>
        <translation>Gezeigte Regler &amp;merken</translation>
    </message>
    <message>
        <source>Restore Memor&amp;ized Dials</source>
        <translation>Gemerkte Regler &amp;wiederherstellen</translation>
    </message>
    <message>
        <source>&amp;Reset Shown Dials</source>
        <translation>Gezeigte Regler &amp;zurücksetzen</translation>
    </message>
    <message>
        <source>Co&amp;py Shape</source>
        <translation>Form &amp;kopieren</translation>
    </message>
    <message>
        <source>Paste &amp;Shape</source>
        <translation>Form &amp;einfügen</translation>
    </message>
    <message>
        <source>The value of 1 dial is memorized.</source>
        <translation>Der Wert von 1 Regler ist gemerkt.</translation>
    </message>
    <message>
        <source>The values of %1 dials are memorized.</source>
        <translation>Die Werte von %1 Reglern sind gemerkt.</translation>
    </message>
    <message>
        <source>The shape of %1 is copied.</source>
        <translation>Die Form von %1 ist kopiert.</translation>
    </message>
    <message>
        <source>No shape has been copied.</source>
        <translation>Es wurde keine Form kopiert.</translation>
    </message>
</context>
<context>
    <name>openhost::DrawStyles</name>
    <message>
        <source>Smooth Shaded</source>
        <translation>Glatt schattiert</translation>
    </message>
    <message>
        <source>Wire Shaded</source>
        <translation>Schattiert mit Netz</translation>
    </message>
    <message>
        <source>Hidden Line</source>
        <translation>Netz ohne Verdecktes</translation>
    </message>
    <message>
        <source>Wireframe</source>
        <translation>Drahtgitter</translation>
    </message>
    <message>
        <source>Wire Bounding Box</source>
        <translation>Umgebender Quader</translation>
    </message>
</context>
<context>
    <name>openhost::FileFinder</name>
    <message>
        <source>All Kinds</source>
        <translation>Alle Arten</translation>
    </message>
    <message>
        <source>Figures</source>
        <translation>Figuren</translation>
    </message>
    <message>
        <source>Shapes</source>
        <translation>Formen</translation>
    </message>
    <message>
        <source>Poses</source>
        <translation>Posen</translation>
    </message>
    <message>
        <source>Scenes</source>
        <translation>Szenen</translation>
    </message>
    <message>
        <source>Search all folders</source>
        <translation>In allen Ordnern suchen</translation>
    </message>
    <message>
        <source>Search all content folders</source>
        <translation>In allen Inhaltsordnern suchen</translation>
    </message>
    <message>
        <source>Kind of files</source>
        <translation>Art der Dateien</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>Favorites only</source>
        <translation>Nur Favoriten</translation>
    </message>
    <message>
        <source>%1 of %2 files</source>
        <translation>%1 von %2 Dateien</translation>
    </message>
    <message>
        <source>%1, and still looking...</source>
        <translation>%1, die Suche läuft noch...</translation>
    </message>
</context>
<context>
    <name>openhost::LimitsDialog</name>
    <message>
        <source>&amp;Keep values within the limits</source>
        <translation>Werte &amp;innerhalb der Grenzen halten</translation>
    </message>
    <message>
        <source>Limits of %1</source>
        <translation>Grenzen von %1</translation>
    </message>
    <message>
        <source>&amp;From:</source>
        <translation>&amp;Von:</translation>
    </message>
    <message>
        <source>&amp;To:</source>
        <translation>&amp;Bis:</translation>
    </message>
    <message>
        <source>The first limit has to be below the second one.</source>
        <translation>Die erste Grenze muss unter der zweiten liegen.</translation>
    </message>
</context>
<context>
    <name>openhost::Menus</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
</context>
<context>
    <name>openhost::OptionsDialog</name>
    <message>
        <source>Accept</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>openhost::Panes</name>
    <message>
        <source>Content Library</source>
        <translation>Inhaltsbibliothek</translation>
    </message>
    <message>
        <source>Smart Content</source>
        <translation>Smart Content</translation>
    </message>
    <message>
        <source>Script IDE</source>
        <translation>Skripte</translation>
    </message>
    <message>
        <source>Scene</source>
        <translation>Szene</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation>Parameter</translation>
    </message>
</context>
<context>
    <name>openhost::ParametersWidget</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>Favorites only</source>
        <translation>Nur Favoriten</translation>
    </message>
    <message>
        <source>Groups of dials</source>
        <translation>Gruppen von Reglern</translation>
    </message>
    <message>
        <source>Search dials</source>
        <translation>Regler suchen</translation>
    </message>
    <message>
        <source>Dials</source>
        <translation>Regler</translation>
    </message>
    <message>
        <source>All dials that are shown</source>
        <translation>Alle gezeigten Regler</translation>
    </message>
</context>
<context>
    <name>openhost::ProgressWindow</name>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>openhost::PropertyEditor</name>
    <message>
        <source>%1 (locked)</source>
        <translation>%1 (gesperrt)</translation>
    </message>
</context>
<context>
    <name>openhost::PropertyRow</name>
    <message>
        <source>Favorite</source>
        <translation>Favorit</translation>
    </message>
    <message>
        <source>Favorite: %1</source>
        <translation>Favorit: %1</translation>
    </message>
    <message>
        <source>&amp;Reset</source>
        <translation>&amp;Zurücksetzen</translation>
    </message>
    <message>
        <source>&amp;Memorize</source>
        <translation>&amp;Merken</translation>
    </message>
    <message>
        <source>Restore Memor&amp;ized</source>
        <translation>Gemerkten Wert &amp;wiederherstellen</translation>
    </message>
    <message>
        <source>&amp;Limits...</source>
        <translation>&amp;Grenzen...</translation>
    </message>
    <message>
        <source>Loc&amp;ked</source>
        <translation>Ge&amp;sperrt</translation>
    </message>
</context>
<context>
    <name>openhost::SaveFileDialog</name>
    <message>
        <source>Save %1</source>
        <translation>%1 speichern</translation>
    </message>
    <message>
        <source>Scene and preset files (*.duf)</source>
        <translation>Szenen- und Voreinstellungsdateien (*.duf)</translation>
    </message>
</context>
<context>
    <name>openhost::Undo</name>
    <message>
        <source>Set %1</source>
        <translation>%1 einstellen</translation>
    </message>
    <message>
        <source>Change %1</source>
        <translation>%1 ändern</translation>
    </message>
    <message>
        <source>Change the Link of %1</source>
        <translation>Verknüpfung von %1 ändern</translation>
    </message>
    <message>
        <source>Rename %1</source>
        <translation>%1 umbenennen</translation>
    </message>
    <message>
        <source>Fit %1</source>
        <translation>%1 anpassen</translation>
    </message>
    <message>
        <source>Change Morph %1</source>
        <translation>Morph %1 ändern</translation>
    </message>
    <message>
        <source>Create Morph %1</source>
        <translation>Morph %1 erzeugen</translation>
    </message>
    <message>
        <source>Delete Morph %1</source>
        <translation>Morph %1 löschen</translation>
    </message>
    <message>
        <source>Add %1</source>
        <translation>%1 hinzufügen</translation>
    </message>
    <message>
        <source>Delete %1</source>
        <translation>%1 löschen</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>%1 entfernen</translation>
    </message>
    <message>
        <source>Link %1</source>
        <translation>%1 verknüpfen</translation>
    </message>
    <message>
        <source>Unlink %1</source>
        <translation>Verknüpfung von %1 lösen</translation>
    </message>
    <message>
        <source>Move %1</source>
        <translation>%1 verschieben</translation>
    </message>
    <message>
        <source>Show %1</source>
        <translation>%1 zeigen</translation>
    </message>
    <message>
        <source>Hide %1</source>
        <translation>%1 ausblenden</translation>
    </message>
    <message>
        <source>Delete %1 at once</source>
        <translation>%1 sofort löschen</translation>
    </message>
    <message>
        <source>Replace the Shape of %1</source>
        <translation>Form von %1 ersetzen</translation>
    </message>
    <message>
        <source>Change the Shape of %1</source>
        <translation>Form von %1 ändern</translation>
    </message>
    <message>
        <source>Clear the Scene</source>
        <translation>Szene leeren</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Änderung</translation>
    </message>
    <message>
        <source>%1 and %2 More</source>
        <translation>%1 und %2 weitere</translation>
    </message>
</context>
<context>
    <name>openhost::Views</name>
    <message>
        <source>Perspective View</source>
        <translation>Perspektive</translation>
    </message>
</context>
<context>
    <name>openhost::WindowAttendant</name>
    <message numerus="yes">
        <source>and %n more</source>
        <translation>
            <numerusform>und %n weiterer Eintrag</numerusform>
            <numerusform>und %n weitere Einträge</numerusform>
        </translation>
    </message>
    <message>
        <source>Missing Files</source>
        <translation>Fehlende Dateien</translation>
    </message>
    <message>
        <source>These files are in no content library. What refers to them is left out.</source>
        <translation>Diese Dateien sind in keiner Inhaltsbibliothek. Was auf sie verweist, wird weggelassen.</translation>
    </message>
    <message>
        <source>Error opening file</source>
        <translation>Fehler beim Öffnen der Datei</translation>
    </message>
    <message>
        <source>The file could not be opened.

</source>
        <translation>Die Datei konnte nicht geöffnet werden.

</translation>
    </message>
    <message>
        <source>Duplicate Formulas Found</source>
        <translation>Doppelte Formeln gefunden</translation>
    </message>
    <message>
        <source>Formulas that say the same more than once drive:

%1</source>
        <translation>Von Formeln, die mehrfach dasselbe sagen, werden gesteuert:

%1</translation>
    </message>
    <message>
        <source>There is a file for a morph of this name already:</source>
        <translation>Für einen Morph dieses Namens gibt es schon eine Datei:</translation>
    </message>
    <message>
        <source>There are files for morphs of these names already:</source>
        <translation>Für Morphs dieser Namen gibt es schon Dateien:</translation>
    </message>
    <message>
        <source>Replacing it loses the morph that it holds.</source>
        <translation>Wird sie ersetzt, geht der Morph verloren, den sie enthält.</translation>
    </message>
    <message>
        <source>Replacing them loses the morphs that they hold.</source>
        <translation>Werden sie ersetzt, gehen die Morphs verloren, die sie enthalten.</translation>
    </message>
    <message>
        <source>Replace Morph Files</source>
        <translation>Morph-Dateien ersetzen</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Preset Exceeds Limits</source>
        <translation>Voreinstellung überschreitet Grenzen</translation>
    </message>
    <message>
        <source>The preset goes beyond the limits of these dials:

%1</source>
        <translation>Die Voreinstellung geht über die Grenzen dieser Regler hinaus:

%1</translation>
    </message>
    <message>
        <source>Turn Limits Off</source>
        <translation>Grenzen ausschalten</translation>
    </message>
    <message>
        <source>Keep Limits</source>
        <translation>Grenzen beibehalten</translation>
    </message>
</context>
</TS>
