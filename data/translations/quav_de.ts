<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Application</name>
    <message>
        <source>A workbench for people who keep music without loss.</source>
        <translation>Eine Werkbank für alle, die Musik verlustfrei aufbewahren.</translation>
    </message>
    <message>
        <source>Select the tab LABEL.</source>
        <translation>Den Reiter LABEL auswählen.</translation>
    </message>
    <message>
        <source>Files and folders to add to the tab&apos;s list.</source>
        <translation>Dateien und Ordner, die in die Liste des Reiters kommen.</translation>
    </message>
    <message>
        <source>quav: there is no tab “%1”; there are: %2</source>
        <translation>quav: Einen Reiter „%1“ gibt es nicht; es gibt: %2</translation>
    </message>
    <message>
        <source>Cleaned Up</source>
        <translation>Aufgeräumt</translation>
    </message>
</context>
<context>
    <name>AudioConverter</name>
    <message>
        <source>“%1” is of no kind that can be read here.</source>
        <translation>„%1“ ist von keiner Art, die hier gelesen werden kann.</translation>
    </message>
</context>
<context>
    <name>BaseTab</name>
    <message>
        <source>The folder “%1” could not be read.</source>
        <translation>Der Ordner „%1“ konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The name of “%1” is not valid UTF-8, so the file cannot be reached. Rename it and add it again.</source>
        <translation>Der Name von „%1“ ist kein gültiges UTF-8, daher ist die Datei nicht erreichbar. Benennen Sie sie um und fügen Sie sie erneut hinzu.</translation>
    </message>
</context>
<context>
    <name>BatchSummary</name>
    <message numerus="yes">
        <source>%Ln tasks are done.</source>
        <translation>
            <numerusform>%Ln Aufgabe ist erledigt.</numerusform>
            <numerusform>%Ln Aufgaben sind erledigt.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tasks were canceled.</source>
        <translation>
            <numerusform>%Ln Aufgabe wurde abgebrochen.</numerusform>
            <numerusform>%Ln Aufgaben wurden abgebrochen.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files are damaged.</source>
        <translation>
            <numerusform>%Ln Datei ist beschädigt.</numerusform>
            <numerusform>%Ln Dateien sind beschädigt.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files are missing.</source>
        <translation>
            <numerusform>%Ln Datei fehlt.</numerusform>
            <numerusform>%Ln Dateien fehlen.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files could not be read.</source>
        <translation>
            <numerusform>%Ln Datei konnte nicht gelesen werden.</numerusform>
            <numerusform>%Ln Dateien konnten nicht gelesen werden.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tasks failed: %1</source>
        <translation>
            <numerusform>%Ln Aufgabe ist fehlgeschlagen: %1</numerusform>
            <numerusform>%Ln Aufgaben sind fehlgeschlagen: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tasks failed.</source>
        <translation>
            <numerusform>%Ln Aufgabe ist fehlgeschlagen.</numerusform>
            <numerusform>%Ln Aufgaben sind fehlgeschlagen.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln outputs have the sound of their originals.</source>
        <translation>
            <numerusform>%Ln Ausgabe hat den Ton ihres Originals.</numerusform>
            <numerusform>%Ln Ausgaben haben den Ton ihrer Originale.</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 · %2</source>
        <comment>what failed, and the rest</comment>
        <translation>%1 · %2</translation>
    </message>
</context>
<context>
    <name>BoundedLines</name>
    <message numerus="yes">
        <source>and %Ln more that are not shown</source>
        <translation>
            <numerusform>und %Ln weitere, die nicht gezeigt wird</numerusform>
            <numerusform>und %Ln weitere, die nicht gezeigt werden</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ChecksumFiles</name>
    <message>
        <source>“%1” could not be kept under another name: %2</source>
        <translation>„%1“ konnte nicht unter einem anderen Namen aufgehoben werden: %2</translation>
    </message>
    <message>
        <source>“%1” could not be written: it is no file</source>
        <translation>„%1“ konnte nicht geschrieben werden: Es ist keine Datei</translation>
    </message>
    <message>
        <source>“%1” could not be written: %2</source>
        <translation>„%1“ konnte nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>“%1” lacks entries. The list that was there before is now “%2”.</source>
        <translation>In „%1“ fehlen Einträge. Die frühere Liste heißt jetzt „%2“.</translation>
    </message>
    <message>
        <source>it is no file</source>
        <translation>es ist keine Datei</translation>
    </message>
    <message>
        <source>This checksum file was not made by this program and will be overwritten.  Are you sure you want to continue?</source>
        <translation>Diese Prüfsummendatei stammt nicht von diesem Programm und wird überschrieben.  Möchten Sie wirklich fortfahren?</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
</context>
<context>
    <name>ChecksumList</name>
    <message>
        <source>“%1” could not be read: %2</source>
        <translation>„%1“ konnte nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>it is larger than any list of checksums, 64 MiB</source>
        <translation>sie ist größer als jede Prüfsummenliste (64 MiB)</translation>
    </message>
    <message>
        <source>it has more lines than any list of checksums, 500,000</source>
        <translation>sie hat mehr Zeilen als jede Prüfsummenliste (500.000)</translation>
    </message>
    <message>
        <source>“%1” cannot be found again by its name in the list</source>
        <translation>„%1“ ist unter dem Namen, der in der Liste steht, nicht wiederzufinden</translation>
    </message>
</context>
<context>
    <name>ChecksumRun</name>
    <message>
        <source>The files lie in several folders. Say --save PATH.</source>
        <translation>Die Dateien liegen in mehreren Ordnern. Geben Sie --save PATH an.</translation>
    </message>
    <message>
        <source>Where is the checksum file to go? Say --save PATH or --beside.</source>
        <translation>Wohin soll die Prüfsummendatei? Geben Sie --save PATH oder --beside an.</translation>
    </message>
    <message>
        <source>“%1” is a folder.</source>
        <translation>„%1“ ist ein Ordner.</translation>
    </message>
    <message>
        <source>There is no folder for “%1”.</source>
        <translation>Für „%1“ gibt es keinen Ordner.</translation>
    </message>
    <message>
        <source>“%1” can only be read with --tolerant. It was left out.</source>
        <translation>„%1“ ist nur mit --tolerant lesbar und wurde ausgelassen.</translation>
    </message>
    <message>
        <source>“%1” is of no kind for this command. It was left out.</source>
        <translation>Mit „%1“ kann dieser Befehl nichts anfangen. Die Datei wurde ausgelassen.</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>default:</source>
        <translation>Vorgabe:</translation>
    </message>
    <message>
        <source>the setting %1, at first %2</source>
        <translation>die Einstellung %1, anfangs %2</translation>
    </message>
    <message>
        <source>Examples:
  quav-cli encode --to flac --output archive concert
  quav-cli decode --to wav --beside concert/*.flac
  quav-cli encode --to flac --dry-run --output archive concert
  quav-cli checksum verify concert

Exit status:</source>
        <translation>Beispiele:
  quav-cli encode --to flac --output archiv konzert
  quav-cli decode --to wav --beside konzert/*.flac
  quav-cli encode --to flac --dry-run --output archiv konzert
  quav-cli checksum verify konzert

Exit-Status:</translation>
    </message>
    <message>
        <source>Print the manual page and exit</source>
        <translation>Die Handbuchseite ausgeben und beenden</translation>
    </message>
    <message>
        <source>Print the completions for a shell and exit</source>
        <translation>Die Vervollständigungen für eine Shell ausgeben und beenden</translation>
    </message>
    <message>
        <source>Print those of the tool whose options stand in this file</source>
        <translation>Die des Werkzeugs ausgeben, dessen Optionen in dieser Datei stehen</translation>
    </message>
    <message>
        <source>Example: quav-cli encode --to flac --level 8 --output archive concert</source>
        <translation>Beispiel: quav-cli encode --to flac --level 8 --output archiv konzert</translation>
    </message>
    <message>
        <source>Example: quav-cli decode --to wav --beside concert/*.flac</source>
        <translation>Beispiel: quav-cli decode --to wav --beside konzert/*.flac</translation>
    </message>
    <message>
        <source>Write everything into this folder, which is made if it is missing</source>
        <translation>Alles in diesen Ordner schreiben; fehlt er, wird er angelegt</translation>
    </message>
    <message>
        <source>Only print what would be done, as commands for a shell</source>
        <translation>Nur ausgeben, was getan würde, als Befehle für eine Shell</translation>
    </message>
    <message>
        <source>How many files at a time</source>
        <translation>Wie viele Dateien gleichzeitig</translation>
    </message>
    <message>
        <source>End a tool that has neither read, written nor printed anything for so long; 0: never</source>
        <translation>Ein Werkzeug beenden, das so lange nichts gelesen, geschrieben oder ausgegeben hat; 0: nie</translation>
    </message>
    <message>
        <source>One JSON object a line on the standard output</source>
        <translation>Ein JSON-Objekt je Zeile auf der Standardausgabe</translation>
    </message>
    <message>
        <source>Only errors, warnings and reports</source>
        <translation>Nur Fehler, Warnungen und Berichte</translation>
    </message>
    <message>
        <source>Files and folders; a folder is searched with everything below it</source>
        <translation>Dateien und Ordner; ein Ordner wird mit allem darunter durchsucht</translation>
    </message>
    <message>
        <source>Write and verify checksum files, test files</source>
        <translation>Prüfsummendateien schreiben und prüfen, Dateien testen</translation>
    </message>
    <message>
        <source>Write one checksum file over all files</source>
        <translation>Eine Prüfsummendatei über alle Dateien schreiben</translation>
    </message>
    <message>
        <source>Write the checksum file to this path</source>
        <translation>Die Prüfsummendatei unter diesem Pfad schreiben</translation>
    </message>
    <message>
        <source>Example: quav-cli checksum create --kind ffp --beside concert/*.flac</source>
        <translation>Beispiel: quav-cli checksum create --kind ffp --beside konzert/*.flac</translation>
    </message>
    <message>
        <source>Check the files that MD5, ST5 and FFP files name</source>
        <translation>Die Dateien prüfen, die MD5-, ST5- und FFP-Dateien nennen</translation>
    </message>
    <message>
        <source>Example: quav-cli checksum verify concert</source>
        <translation>Beispiel: quav-cli checksum verify konzert</translation>
    </message>
    <message>
        <source>Test FLAC, APE, WV and TTA files with their own decoders</source>
        <translation>FLAC-, APE-, WV- und TTA-Dateien mit ihren eigenen Decodern testen</translation>
    </message>
    <message>
        <source>Answer every question with yes</source>
        <translation>Jede Frage mit Ja beantworten</translation>
    </message>
    <message>
        <source>Answer every question with no</source>
        <translation>Jede Frage mit Nein beantworten</translation>
    </message>
    <message>
        <source>The setting&apos;s name</source>
        <translation>Der Name der Einstellung</translation>
    </message>
    <message>
        <source>List the tools that do the work</source>
        <translation>Die Werkzeuge auflisten, die die Arbeit tun</translation>
    </message>
    <message>
        <source>Print JSON, one object a line</source>
        <translation>JSON ausgeben, ein Objekt je Zeile</translation>
    </message>
    <message>
        <source>Show and change the settings</source>
        <translation>Die Einstellungen zeigen und ändern</translation>
    </message>
    <message>
        <source>List all settings and mark the changed ones</source>
        <translation>Alle Einstellungen auflisten und die geänderten kennzeichnen</translation>
    </message>
    <message>
        <source>Print the value of a setting</source>
        <translation>Den Wert einer Einstellung ausgeben</translation>
    </message>
    <message>
        <source>Change a setting</source>
        <translation>Eine Einstellung ändern</translation>
    </message>
    <message>
        <source>Its new value</source>
        <translation>Ihr neuer Wert</translation>
    </message>
    <message>
        <source>Give a setting its default again</source>
        <translation>Eine Einstellung auf ihre Vorgabe zurücksetzen</translation>
    </message>
    <message>
        <source>Example: quav-cli settings set maxThreads 4</source>
        <translation>Beispiel: quav-cli settings set maxThreads 4</translation>
    </message>
    <message>
        <source>Print this help and exit</source>
        <translation>Diese Hilfe ausgeben und beenden</translation>
    </message>
    <message>
        <source>Print the version and exit</source>
        <translation>Die Version ausgeben und beenden</translation>
    </message>
    <message>
        <source>A command</source>
        <translation>Ein Befehl</translation>
    </message>
    <message>
        <source>required without --preset</source>
        <translation>ohne --preset erforderlich</translation>
    </message>
    <message>
        <source>Turn files into FLAC or WavPack</source>
        <translation>Dateien in FLAC oder WavPack umwandeln</translation>
    </message>
    <message>
        <source>Take what is not given here from this preset; “quav-cli presets list” lists them</source>
        <translation>Was hier nicht angegeben ist, aus dieser Voreinstellung nehmen; „quav-cli presets list“ zeigt alle</translation>
    </message>
    <message>
        <source>The command that it is for</source>
        <translation>Der Befehl, für den sie gilt</translation>
    </message>
    <message>
        <source>The preset&apos;s name</source>
        <translation>Der Name der Voreinstellung</translation>
    </message>
    <message>
        <source>Make or replace a preset of what the settings say and what is given</source>
        <translation>Eine Voreinstellung aus den Einstellungen und den Angaben anlegen oder ersetzen</translation>
    </message>
    <message>
        <source>Save a preset for %1</source>
        <translation>Eine Voreinstellung für %1 speichern</translation>
    </message>
    <message>
        <source>Keep sets of options under names</source>
        <translation>Zusammenstellungen von Optionen unter Namen aufbewahren</translation>
    </message>
    <message>
        <source>List all presets</source>
        <translation>Alle Voreinstellungen auflisten</translation>
    </message>
    <message>
        <source>Print the options of a preset</source>
        <translation>Die Optionen einer Voreinstellung ausgeben</translation>
    </message>
    <message>
        <source>Delete a preset</source>
        <translation>Eine Voreinstellung löschen</translation>
    </message>
    <message>
        <source>Give a preset another name</source>
        <translation>Einer Voreinstellung einen anderen Namen geben</translation>
    </message>
    <message>
        <source>Its new name</source>
        <translation>Ihr neuer Name</translation>
    </message>
    <message>
        <source>Write a preset to a file, for another machine</source>
        <translation>Eine Voreinstellung in eine Datei schreiben, für einen anderen Rechner</translation>
    </message>
    <message>
        <source>Where to; the standard output if it is left out</source>
        <translation>Wohin; ohne Angabe auf die Standardausgabe</translation>
    </message>
    <message>
        <source>Keep the preset in such a file</source>
        <translation>Die Voreinstellung aus einer solchen Datei übernehmen</translation>
    </message>
    <message>
        <source>What was exported</source>
        <translation>Was exportiert wurde</translation>
    </message>
    <message>
        <source>Keep it under this name instead of its own</source>
        <translation>Sie unter diesem Namen statt unter ihrem eigenen aufbewahren</translation>
    </message>
    <message>
        <source>Example: quav-cli presets save encode &quot;For the attic&quot; --level 8 --verify</source>
        <translation>Beispiel: quav-cli presets save encode &quot;Für den Dachboden&quot; --level 8 --verify</translation>
    </message>
    <message>
        <source>Turns WAV and AIFF into FLAC or WavPack and back, many files at a time, with their tags; writes and verifies checksum files; tests compressed files. Does without a display what the window does.</source>
        <translation>Wandelt WAV und AIFF in FLAC oder WavPack um und zurück, viele Dateien auf einmal, mit ihren Tags; schreibt und prüft Prüfsummendateien; testet komprimierte Dateien. Tut ohne Bildschirm, was das Fenster tut.</translation>
    </message>
    <message>
        <source>Turn FLAC and WavPack files back into WAV or AIFF</source>
        <translation>FLAC- und WavPack-Dateien zurück in WAV oder AIFF umwandeln</translation>
    </message>
</context>
<context>
    <name>Completion</name>
    <message>
        <source>“%1” holds no options of a tool.</source>
        <translation>„%1“ enthält keine Optionen eines Werkzeugs.</translation>
    </message>
</context>
<context>
    <name>ConversionRun</name>
    <message>
        <source>“%1” is of no kind that can be converted and is skipped.</source>
        <translation>„%1“ lässt sich nicht umwandeln und wird übergangen.</translation>
    </message>
    <message>
        <source>Where are the outputs to go? Say --output DIR or --beside.</source>
        <translation>Wohin sollen die Ausgabedateien? Geben Sie --output DIR oder --beside an.</translation>
    </message>
</context>
<context>
    <name>CreateFFPTask</name>
    <message>
        <source>“%1” has no entry: %2</source>
        <translation>„%1“ hat keinen Eintrag: %2</translation>
    </message>
    <message>
        <source>“%1” has no entry but what metaflac said of it</source>
        <translation>„%1“ hat als Eintrag nur, was metaflac dazu ausgab</translation>
    </message>
    <message>
        <source>Create FFP checksum file</source>
        <translation>FFP-Prüfsummendatei erzeugen</translation>
    </message>
    <message>
        <source>“%1” was not written: it would have no entry</source>
        <translation>„%1“ wurde nicht geschrieben: Es gäbe keinen Eintrag</translation>
    </message>
    <message>
        <source>Creating FFP checksum file</source>
        <translation>FFP-Prüfsummendatei wird erzeugt</translation>
    </message>
    <message>
        <source>“%1” is not there and has no entry</source>
        <translation>„%1“ ist nicht da und hat keinen Eintrag</translation>
    </message>
</context>
<context>
    <name>CreateMD5Task</name>
    <message>
        <source>Create MD5 checksum file</source>
        <translation>MD5-Prüfsummendatei erzeugen</translation>
    </message>
    <message>
        <source>Creating MD5 checksum file</source>
        <translation>MD5-Prüfsummendatei wird erzeugt</translation>
    </message>
    <message>
        <source>Creating MD5 Hash</source>
        <translation>MD5-Prüfsumme wird berechnet</translation>
    </message>
    <message>
        <source>“%1” could not be read: %2</source>
        <translation>„%1“ konnte nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>“%1” is itself in the list, as it was before: this entry will always fail</source>
        <translation>„%1“ steht selbst in der Liste, mit dem früheren Inhalt: Dieser Eintrag wird nie stimmen</translation>
    </message>
    <message numerus="yes">
        <source>%Ln of the files are MD5 lists, too, such as “%1”: their entries will fail once those lists are made again</source>
        <translation>
            <numerusform>%Ln der Dateien ist selbst eine MD5-Liste: „%1“; ihr Eintrag stimmt nicht mehr, sobald diese Liste neu erzeugt wird</numerusform>
            <numerusform>%Ln der Dateien sind selbst MD5-Listen, etwa „%1“; ihre Einträge stimmen nicht mehr, sobald diese Listen neu erzeugt werden</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CreateST5Task</name>
    <message>
        <source>Creating ST5: %1%</source>
        <translation>ST5 wird erzeugt: %1%</translation>
    </message>
    <message>
        <source>shntool could not be started: %1</source>
        <translation>shntool konnte nicht gestartet werden: %1</translation>
    </message>
</context>
<context>
    <name>DecodeFlacTask</name>
    <message>
        <source>Decoding Flac: %1%</source>
        <translation>FLAC wird dekodiert: %1%</translation>
    </message>
    <message>
        <source>Copying Flac Tags</source>
        <translation>FLAC-Tags werden kopiert</translation>
    </message>
</context>
<context>
    <name>DecodeWavpackTask</name>
    <message>
        <source>Decoding From Wavpack</source>
        <translation>Aus WavPack wird dekodiert</translation>
    </message>
    <message>
        <source>Deoding From Wavpack: %1%</source>
        <translation>Aus WavPack dekodieren: %1%</translation>
    </message>
    <message>
        <source>Copying Wavpack Tags</source>
        <translation>WavPack-Tags werden kopiert</translation>
    </message>
</context>
<context>
    <name>EncodeFlacTask</name>
    <message>
        <source>Encoding to Flac: %1% %2</source>
        <translation>Nach FLAC kodieren: %1% %2</translation>
    </message>
    <message>
        <source>Reading AIFF Tags</source>
        <translation>AIFF-Tags werden gelesen</translation>
    </message>
    <message>
        <source>Reading WAV Tags</source>
        <translation>WAV-Tags werden gelesen</translation>
    </message>
    <message>
        <source>Writing Flac Tags</source>
        <translation>FLAC-Tags werden geschrieben</translation>
    </message>
</context>
<context>
    <name>EncodeWavpackTask</name>
    <message>
        <source>Encoding Wavpack</source>
        <translation>WavPack wird kodiert</translation>
    </message>
    <message>
        <source>Encoding to Wavpack: %1%</source>
        <translation>Nach WavPack kodieren: %1%</translation>
    </message>
</context>
<context>
    <name>EncoderTask</name>
    <message>
        <source>Copying FLAC Tags</source>
        <translation>FLAC-Tags werden kopiert</translation>
    </message>
    <message>
        <source>Copying Aiff Tags</source>
        <translation>AIFF-Tags werden kopiert</translation>
    </message>
    <message>
        <source>Copying WAV Tags</source>
        <translation>WAV-Tags werden kopiert</translation>
    </message>
    <message>
        <source>Decoding ALAC to Wav</source>
        <translation>ALAC wird nach WAV dekodiert</translation>
    </message>
    <message>
        <source>Decoding FLAC to Wav</source>
        <translation>FLAC wird nach WAV dekodiert</translation>
    </message>
    <message>
        <source>Decoding SHN to Wav</source>
        <translation>SHN wird nach WAV dekodiert</translation>
    </message>
    <message>
        <source>Decoding to Wav: %1%</source>
        <translation>Nach WAV dekodieren: %1%</translation>
    </message>
</context>
<context>
    <name>Exceptions</name>
    <message>
        <source>Unable to open the output file for tagging.</source>
        <translation>Die Ausgabedatei konnte nicht zum Schreiben der Tags geöffnet werden.</translation>
    </message>
</context>
<context>
    <name>ExitStatus</name>
    <message>
        <source>everything succeeded</source>
        <translation>alles ist gelungen</translation>
    </message>
    <message>
        <source>a task failed or was cancelled, or a file could not be reached or converted, is damaged, missing, or not what its checksum says</source>
        <translation>eine Aufgabe ist fehlgeschlagen oder wurde abgebrochen, oder eine Datei war nicht erreichbar oder umwandelbar, ist beschädigt, fehlt oder entspricht nicht ihrer Prüfsumme</translation>
    </message>
    <message>
        <source>wrong usage, nothing to do, or something in the way</source>
        <translation>falscher Aufruf, nichts zu tun, oder etwas steht im Weg</translation>
    </message>
    <message>
        <source>a question was answered with no</source>
        <translation>eine Frage wurde mit Nein beantwortet</translation>
    </message>
</context>
<context>
    <name>FailureReason</name>
    <message>
        <source>It failed, and nothing says why</source>
        <translation>Es ist fehlgeschlagen, und nichts sagt, warum</translation>
    </message>
    <message>
        <source>It failed: %1</source>
        <translation>Es ist fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>%1 failed with exit status %2 and said nothing</source>
        <translation>%1 endete mit Exit-Status %2, ohne etwas dazu auszugeben</translation>
    </message>
    <message>
        <source>%1 failed with exit status %2: %3</source>
        <translation>%1 endete mit Exit-Status %2: %3</translation>
    </message>
    <message>
        <source>%1 was ended by signal %2 (%3)</source>
        <translation>%1 wurde durch Signal %2 beendet (%3)</translation>
    </message>
    <message>
        <source>%1 neither read, wrote nor printed anything for %2 and was ended</source>
        <translation>%1 hat %2 lang nichts gelesen, geschrieben oder ausgegeben und wurde beendet</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
</context>
<context>
    <name>FileConversion</name>
    <message>
        <source>the output could not be given the time of its source</source>
        <translation>die Ausgabedatei konnte nicht die Änderungszeit ihrer Quelle erhalten</translation>
    </message>
    <message>
        <source>“%1” could not be brought to the disk: %2</source>
        <translation>„%1“ konnte nicht auf den Datenträger geschrieben werden: %2</translation>
    </message>
    <message>
        <source>the earlier output file could not be removed and is now “%1”</source>
        <translation>die frühere Ausgabedatei konnte nicht gelöscht werden und heißt jetzt „%1“</translation>
    </message>
    <message>
        <source>The earlier output file is now “%1”.</source>
        <translation>Die frühere Ausgabedatei heißt jetzt „%1“.</translation>
    </message>
    <message>
        <source>There is no output file “%1”.</source>
        <translation>Es gibt keine Ausgabedatei „%1“.</translation>
    </message>
    <message>
        <source>“%1” was not converted, since sound would be left out: %2</source>
        <translation>„%1“ wurde nicht umgewandelt, da Ton verloren ginge: %2</translation>
    </message>
    <message>
        <source>Error writing tags to file:
%1</source>
        <translation>Fehler beim Schreiben der Tags in die Datei:
%1</translation>
    </message>
    <message>
        <source>the tags could not be written: %1</source>
        <translation>die Tags konnten nicht geschrieben werden: %1</translation>
    </message>
    <message>
        <source>Comparing the sound</source>
        <translation>Der Ton wird verglichen</translation>
    </message>
    <message>
        <source>The new file has not the sound of the original: %1.</source>
        <translation>Die neue Datei hat nicht den Ton des Originals: %1.</translation>
    </message>
    <message>
        <source>the original has changed since it was read</source>
        <translation>das Original hat sich geändert, seit es gelesen wurde</translation>
    </message>
    <message>
        <source>The new file is not whole: %1.</source>
        <translation>Die neue Datei ist nicht vollständig: %1.</translation>
    </message>
    <message>
        <source>the sound could not be compared: %1</source>
        <translation>der Ton konnte nicht verglichen werden: %1</translation>
    </message>
    <message>
        <source>not in the output: %1</source>
        <translation>nicht in der Ausgabedatei: %1</translation>
    </message>
    <message>
        <source>the tool complained of damage</source>
        <translation>das Werkzeug meldete einen Schaden</translation>
    </message>
    <message>
        <source>its tags could not be written</source>
        <translation>die Tags konnten nicht geschrieben werden</translation>
    </message>
    <message>
        <source>not all of it is in the output</source>
        <translation>nicht alles davon ist in der Ausgabedatei</translation>
    </message>
    <message>
        <source>the original has changed since it was read, and was kept</source>
        <translation>das Original hat sich geändert, seit es gelesen wurde, und blieb erhalten</translation>
    </message>
    <message>
        <source>the original was kept: %1</source>
        <translation>das Original blieb erhalten: %1</translation>
    </message>
    <message>
        <source>the original could not be deleted and is still there</source>
        <translation>das Original konnte nicht gelöscht werden und ist noch da</translation>
    </message>
</context>
<context>
    <name>Fingerprint</name>
    <message>
        <source>metaflac could not be started: %1</source>
        <translation>metaflac konnte nicht gestartet werden: %1</translation>
    </message>
    <message>
        <source>it has no fingerprint, only zeros</source>
        <translation>sie hat keinen Fingerabdruck, nur Nullen</translation>
    </message>
    <message>
        <source>“%1” has no fingerprint: its encoder left it at zeros, so nothing can be checked against it. Encode it anew to get one.</source>
        <translation>„%1“ hat keinen Fingerabdruck: Der Encoder hat dort nur Nullen hinterlassen, sodass sich damit nichts prüfen lässt. Kodieren Sie die Datei neu, um einen zu erhalten.</translation>
    </message>
</context>
<context>
    <name>FlacCount</name>
    <message>
        <source>its beginning tells of %L1 samples, and it has %L2</source>
        <translation>am Anfang sind %L1 Samples angegeben, vorhanden sind %L2</translation>
    </message>
</context>
<context>
    <name>HashRun</name>
    <message>
        <source>shntool gave no digest of it</source>
        <translation>shntool gab dafür keine Prüfsumme aus</translation>
    </message>
</context>
<context>
    <name>ListNames</name>
    <message numerus="yes">
        <source>%Ln names in this list will not lead to their files.</source>
        <translation>
            <numerusform>%Ln Name in dieser Liste wird nicht zu seiner Datei führen.</numerusform>
            <numerusform>%Ln Namen in dieser Liste werden nicht zu ihren Dateien führen.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln names stand in it more than once.</source>
        <translation>
            <numerusform>%Ln Name steht mehrmals darin.</numerusform>
            <numerusform>%Ln Namen stehen mehrmals darin.</numerusform>
        </translation>
    </message>
    <message>
        <source>To get lists that verify, make one for the files of each folder and save it beside them (--beside).</source>
        <translation>Damit sich die Listen prüfen lassen, erzeugen Sie für die Dateien jedes Ordners eine und speichern Sie sie daneben (--beside).</translation>
    </message>
    <message>
        <source>An MD5 list may also lie above its files, in “%1”.</source>
        <translation>Eine MD5-Liste darf auch über ihren Dateien liegen, in „%1“.</translation>
    </message>
    <message>
        <source>“%1” would be “%2” in “%3”.</source>
        <translation>„%1“ hieße „%2“ in „%3“.</translation>
    </message>
    <message>
        <source>Are you sure you want to continue?</source>
        <translation>Möchten Sie wirklich fortfahren?</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
</context>
<context>
    <name>ListText</name>
    <message>
        <source>, </source>
        <comment>between two items of a list</comment>
        <translation>, </translation>
    </message>
</context>
<context>
    <name>Losses</name>
    <message>
        <source>the application block “%1”</source>
        <translation>der Anwendungsblock „%1“</translation>
    </message>
    <message>
        <source>the cue sheet</source>
        <translation>das Cue-Sheet</translation>
    </message>
    <message>
        <source>the metadata block of type %1</source>
        <translation>der Metadatenblock vom Typ %1</translation>
    </message>
    <message>
        <source>the ID3v1 tag</source>
        <translation>das ID3v1-Tag</translation>
    </message>
    <message>
        <source>the APE tag</source>
        <translation>das APE-Tag</translation>
    </message>
    <message>
        <source>the private data of “%1”</source>
        <translation>die privaten Daten von „%1“</translation>
    </message>
    <message>
        <source>the identifier of “%1”</source>
        <translation>die Kennung von „%1“</translation>
    </message>
    <message>
        <source>the embedded file “%1”</source>
        <translation>die eingebettete Datei „%1“</translation>
    </message>
    <message>
        <source>the link “%1”</source>
        <translation>der Link „%1“</translation>
    </message>
    <message>
        <source>the synchronised lyrics</source>
        <translation>der synchronisierte Liedtext</translation>
    </message>
    <message>
        <source>the rating (POPM)</source>
        <translation>die Bewertung (POPM)</translation>
    </message>
    <message>
        <source>the play counter (PCNT)</source>
        <translation>der Abspielzähler (PCNT)</translation>
    </message>
    <message>
        <source>the chapters</source>
        <translation>die Kapitel</translation>
    </message>
    <message>
        <source>the comment “%1”</source>
        <translation>der Kommentar „%1“</translation>
    </message>
    <message>
        <source>the lyrics</source>
        <translation>der Liedtext</translation>
    </message>
    <message>
        <source>a part of an ID3v2 tag that cannot be read</source>
        <translation>ein nicht lesbarer Teil eines ID3v2-Tags</translation>
    </message>
    <message>
        <source>the tag %1</source>
        <translation>das Tag %1</translation>
    </message>
    <message>
        <source>the value of %1</source>
        <translation>der Wert von %1</translation>
    </message>
    <message>
        <source>the month of the date</source>
        <translation>der Monat des Datums</translation>
    </message>
    <message>
        <source>the day of the date</source>
        <translation>der Tag des Datums</translation>
    </message>
    <message numerus="yes">
        <source>%Ln pictures</source>
        <translation>
            <numerusform>%Ln Bild</numerusform>
            <numerusform>%Ln Bilder</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>the descriptions of %Ln pictures</source>
        <translation>
            <numerusform>die Beschreibung eines Bildes</numerusform>
            <numerusform>die Beschreibungen von %Ln Bildern</numerusform>
        </translation>
    </message>
    <message>
        <source>tags of “%1” that could not be compared</source>
        <translation>Tags von „%1“, die nicht verglichen werden konnten</translation>
    </message>
    <message numerus="yes">
        <source>%n others</source>
        <translation>
            <numerusform>%n weiteres</numerusform>
            <numerusform>%n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>the chunk %1</source>
        <translation>der Chunk %1</translation>
    </message>
    <message>
        <source>the INFO entry %1</source>
        <translation>der INFO-Eintrag %1</translation>
    </message>
    <message numerus="yes">
        <source>%Ln values of %1</source>
        <translation>
            <numerusform>%Ln Wert von %1</numerusform>
            <numerusform>%Ln Werte von %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln bytes behind the last chunk</source>
        <translation>
            <numerusform>%Ln Byte hinter dem letzten Chunk</numerusform>
            <numerusform>%Ln Bytes hinter dem letzten Chunk</numerusform>
        </translation>
    </message>
    <message>
        <source>what stood before the sound in the file that it was made from</source>
        <translation>was in der Ausgangsdatei vor dem Ton stand</translation>
    </message>
    <message>
        <source>what followed the sound in the file that it was made from</source>
        <translation>was in der Ausgangsdatei auf den Ton folgte</translation>
    </message>
</context>
<context>
    <name>ManPage</name>
    <message>
        <source>User commands</source>
        <translation>Benutzerbefehle</translation>
    </message>
    <message>
        <source>NAME</source>
        <translation>NAME</translation>
    </message>
    <message>
        <source>convert lossless music, many files at a time</source>
        <translation>verlustfreie Musik umwandeln, viele Dateien gleichzeitig</translation>
    </message>
    <message>
        <source>Default: %1.</source>
        <translation>Vorgabe: %1.</translation>
    </message>
    <message>
        <source>EXIT STATUS</source>
        <translation>EXIT-STATUS</translation>
    </message>
    <message>
        <source>Files of other types in the folders that are searched are skipped and count for nothing.</source>
        <translation>Dateien anderer Arten in den durchsuchten Ordnern werden übergangen und zählen nicht.</translation>
    </message>
    <message>
        <source>FILES</source>
        <translation>DATEIEN</translation>
    </message>
    <message>
        <source>The settings, which the window uses as well; below $XDG_CONFIG_HOME if that is set. Only what was changed is in it.</source>
        <translation>Die Einstellungen, die auch das Fenster benutzt; unter $XDG_CONFIG_HOME, wenn das gesetzt ist. Darin steht nur, was geändert wurde.</translation>
    </message>
    <message>
        <source>The tools that do the work, or links to them.</source>
        <translation>Die Werkzeuge, die die Arbeit tun, oder Links auf sie.</translation>
    </message>
    <message>
        <source>ENVIRONMENT</source>
        <translation>UMGEBUNG</translation>
    </message>
    <message>
        <source>The folder of the tools, if not the usual one.</source>
        <translation>Der Ordner der Werkzeuge, wenn es nicht der übliche ist.</translation>
    </message>
    <message>
        <source>EXAMPLES</source>
        <translation>BEISPIELE</translation>
    </message>
    <message>
        <source>Encode everything below a folder into another one:</source>
        <translation>Alles unter einem Ordner in einen anderen kodieren:</translation>
    </message>
    <message>
        <source>Only show what would be done, as commands for a shell:</source>
        <translation>Nur zeigen, was getan würde, als Befehle für eine Shell:</translation>
    </message>
    <message>
        <source>Turn FLAC files back into WAV beside them, four at a time:</source>
        <translation>FLAC-Dateien neben ihnen in WAV zurückwandeln, vier gleichzeitig:</translation>
    </message>
    <message>
        <source>Check everything that the checksum files below a folder name:</source>
        <translation>Alles prüfen, was die Prüfsummendateien unter einem Ordner nennen:</translation>
    </message>
    <message>
        <source>A file whose name begins with a dash:</source>
        <translation>Eine Datei, deren Name mit einem Bindestrich beginnt:</translation>
    </message>
    <message>
        <source>SYNOPSIS</source>
        <translation>ÜBERSICHT</translation>
    </message>
    <message>
        <source>DESCRIPTION</source>
        <translation>BESCHREIBUNG</translation>
    </message>
    <message>
        <source>A question is asked at the terminal. Without one it counts as answered with its default button. Ctrl-C drops the files that wait and lets the tools finish the files that they are at; a second one stops the tools. The report of a set of files goes to the standard output when the set is done and something in it went wrong, or when the report is what was asked for; everything else goes to the standard error stream.</source>
        <translation>Fragen werden am Terminal gestellt. Ohne Terminal gilt eine Frage als mit ihrer Standardschaltfläche beantwortet. Strg-C verwirft die wartenden Dateien und lässt die Werkzeuge die Dateien beenden, an denen sie arbeiten; ein zweites Strg-C hält die Werkzeuge an. Der Bericht über einen Satz von Dateien geht an die Standardausgabe, wenn der Satz fertig und darin etwas schiefgegangen ist oder wenn der Bericht das Gewünschte ist; alles andere geht an die Standardfehlerausgabe.</translation>
    </message>
    <message>
        <source>OPTIONS</source>
        <translation>OPTIONEN</translation>
    </message>
    <message>
        <source>COMMANDS</source>
        <translation>BEFEHLE</translation>
    </message>
    <message>
        <source>The languages of what the program says, the best one first; without it the locale&apos;s. There are English and German.</source>
        <translation>Die Sprachen dessen, was das Programm sagt, die beste zuerst; ohne sie die der Locale. Es gibt Englisch und Deutsch.</translation>
    </message>
</context>
<context>
    <name>OptionFlags</name>
    <message>
        <source>the setting %1, at first %2</source>
        <translation>die Einstellung %1, anfangs %2</translation>
    </message>
    <message>
        <source>The opposite of --%1, whatever the setting says</source>
        <translation>Das Gegenteil von --%1, was auch immer die Einstellung sagt</translation>
    </message>
    <message>
        <source>takes %1, not “%2”</source>
        <translation>nimmt %1, nicht „%2“</translation>
    </message>
    <message>
        <source>%1 or %2</source>
        <translation>%1 oder %2</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>The opposite of --%1, whatever the preset says</source>
        <translation>Das Gegenteil von --%1, was immer die Voreinstellung sagt</translation>
    </message>
</context>
<context>
    <name>Options</name>
    <message>
        <source>true or false</source>
        <translation>true oder false</translation>
    </message>
    <message>
        <source>one of %1</source>
        <translation>eines von %1</translation>
    </message>
    <message>
        <source>a whole number from %1 to %2</source>
        <translation>eine ganze Zahl von %1 bis %2</translation>
    </message>
    <message>
        <source>a text</source>
        <translation>einen Text</translation>
    </message>
    <message>
        <source>“%1” takes %2, not “%3”.</source>
        <translation>„%1“ nimmt %2, nicht „%3“.</translation>
    </message>
    <message>
        <source>There is no option “%1”.</source>
        <translation>Eine Option „%1“ gibt es nicht.</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>Checksum file</source>
        <translation>Prüfsummendatei</translation>
    </message>
    <message>
        <source>Reading</source>
        <translation>Lesen</translation>
    </message>
    <message>
        <source>What is done with the files in the list</source>
        <translation>Was mit den Dateien in der Liste geschieht</translation>
    </message>
    <message>
        <source>md5: of whole files; st5: of their audio, as shntool digests it; ffp: the fingerprints of FLAC files</source>
        <translation>md5: über ganze Dateien; st5: über ihren Ton, wie shntool ihn berechnet; ffp: die Fingerabdrücke von FLAC-Dateien</translation>
    </message>
    <message>
        <source>Save &amp;beside the source files</source>
        <translation>&amp;Neben den Quelldateien speichern</translation>
    </message>
    <message>
        <source>Write it into the folder of the files, under its usual name; files from several folders need a path all the same</source>
        <translation>In den Ordner der Dateien schreiben, unter dem üblichen Namen; Dateien aus mehreren Ordnern brauchen trotzdem einen Pfad</translation>
    </message>
    <message>
        <source>Accept &amp;other spellings</source>
        <translation>&amp;Andere Schreibweisen annehmen</translation>
    </message>
    <message>
        <source>Also read lists with two blanks, tabs, BSD style, upper-case digests, backslashes or other encodings, lists under names such as md5sum.txt, texts with several sections, and names in other capitals; the report says what a strict reader would have found</source>
        <translation>Auch Listen mit zwei Leerzeichen, Tabulatoren, BSD-Schreibweise, Prüfsummen in Großbuchstaben, umgekehrten Schrägstrichen oder anderen Kodierungen lesen, Listen unter Namen wie md5sum.txt, Texte mit mehreren Abschnitten und Namen mit anderer Groß- und Kleinschreibung; der Bericht nennt, was strenges Lesen ergeben hätte</translation>
    </message>
    <message>
        <source>&amp;Test files</source>
        <translation>Date&amp;ien testen</translation>
    </message>
    <message>
        <source>Decode each FLAC, APE, WV and TTA file without writing anything</source>
        <translation>Jede FLAC-, APE-, WV- und TTA-Datei dekodieren, ohne etwas zu schreiben</translation>
    </message>
    <message>
        <source>Create c&amp;hecksum file</source>
        <translation>Prüfsummendatei er&amp;zeugen</translation>
    </message>
    <message>
        <source>Write one checksum file over all files in the list</source>
        <translation>Eine Prüfsummendatei über alle Dateien der Liste schreiben</translation>
    </message>
    <message>
        <source>&amp;Verify checksum files</source>
        <translation>Prüfs&amp;ummendateien prüfen</translation>
    </message>
    <message>
        <source>Check the files that the MD5, ST5 and FFP files in the list name; they are looked up beside their checksum file</source>
        <translation>Die Dateien prüfen, die von den MD5-, ST5- und FFP-Dateien der Liste genannt werden; sie werden neben ihrer Prüfsummendatei gesucht</translation>
    </message>
    <message>
        <source>&amp;MD5</source>
        <translation>&amp;MD5</translation>
    </message>
    <message>
        <source>A digest of each whole file, of any type</source>
        <translation>Eine Prüfsumme jeder ganzen Datei, gleich welcher Art</translation>
    </message>
    <message>
        <source>&amp;ST5</source>
        <translation>&amp;ST5</translation>
    </message>
    <message>
        <source>A digest of the audio of each file, the same for every lossless format</source>
        <translation>Eine Prüfsumme des Tons jeder Datei, gleich für jedes verlustfreie Format</translation>
    </message>
    <message>
        <source>The fingerprint that each FLAC file carries of its audio</source>
        <translation>Der Fingerabdruck, den jede FLAC-Datei von ihrem Ton trägt</translation>
    </message>
    <message>
        <source>&amp;Beside the source files</source>
        <translation>&amp;Neben den Quelldateien</translation>
    </message>
    <message>
        <source>Write each file beside its source instead of into one folder for all</source>
        <translation>Jede Datei neben ihre Quelle schreiben statt alle in einen Ordner</translation>
    </message>
    <message>
        <source>Delete the &amp;source files after</source>
        <translation>&amp;Quelldateien danach löschen</translation>
    </message>
    <message>
        <source>Delete each source once its file is done without error, has the same sound, and nothing of it is missing there</source>
        <translation>Jede Quelle löschen, sobald ihre Datei fehlerfrei fertig ist, denselben Ton hat und ihr nichts davon fehlt</translation>
    </message>
    <message>
        <source>C&amp;ompare the sound after</source>
        <translation>&amp;Ton danach vergleichen</translation>
    </message>
    <message>
        <source>Compare the sound of each source and its file, also when nothing is deleted</source>
        <translation>Den Ton jeder Quelle mit dem ihrer Datei vergleichen, auch wenn nichts gelöscht wird</translation>
    </message>
    <message>
        <source>Delete sources although not all of their tags, pictures and chunks are in their files</source>
        <translation>Quellen auch löschen, wenn nicht alle ihre Tags, Bilder und Chunks in ihren Dateien sind</translation>
    </message>
    <message>
        <source>Target</source>
        <translation>Ziel</translation>
    </message>
    <message>
        <source>FLAC</source>
        <translation>FLAC</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>The format of the outputs</source>
        <translation>Das Format der Ausgabedateien</translation>
    </message>
    <message>
        <source>Decode &amp;through errors</source>
        <translation>Tr&amp;otz Fehlern dekodieren</translation>
    </message>
    <message>
        <source>Go on after damage instead of stopping at it</source>
        <translation>Nach einem Schaden weitermachen, statt dort anzuhalten</translation>
    </message>
    <message>
        <source>&amp;Keep foreign metadata</source>
        <translation>Fremde &amp;Metadaten behalten</translation>
    </message>
    <message>
        <source>Write back the WAV or AIFF chunks that encoding kept</source>
        <translation>Die WAV- oder AIFF-Chunks zurückschreiben, die beim Kodieren behalten wurden</translation>
    </message>
    <message>
        <source>WA&amp;V</source>
        <translation>WA&amp;V</translation>
    </message>
    <message>
        <source>Decode to WAV files</source>
        <translation>In WAV-Dateien dekodieren</translation>
    </message>
    <message>
        <source>A&amp;IFF</source>
        <translation>A&amp;IFF</translation>
    </message>
    <message>
        <source>Decode to AIFF files</source>
        <translation>In AIFF-Dateien dekodieren</translation>
    </message>
    <message>
        <source>Le&amp;vel</source>
        <translation>&amp;Stufe</translation>
    </message>
    <message>
        <source>How hard to compress, from 0 (fast) to 8 (small); the sound is the same; with --lax it is left to flac</source>
        <translation>Wie stark komprimiert wird, von 0 (schnell) bis 8 (klein); der Ton bleibt gleich; mit --lax entscheidet flac</translation>
    </message>
    <message>
        <source>Verif&amp;y</source>
        <translation>&amp;Prüfen</translation>
    </message>
    <message>
        <source>Decode while encoding and compare with the source</source>
        <translation>Beim Kodieren dekodieren und mit der Quelle vergleichen</translation>
    </message>
    <message>
        <source>La&amp;x</source>
        <translation>La&amp;x</translation>
    </message>
    <message>
        <source>Allow streams outside the FLAC subset, for unusual sample rates and resolutions</source>
        <translation>Ströme außerhalb des FLAC-Subsets erlauben, für ungewöhnliche Abtastraten und Auflösungen</translation>
    </message>
    <message>
        <source>Keep the WAV or AIFF chunks that are not audio</source>
        <translation>Die WAV- oder AIFF-Chunks behalten, die kein Ton sind</translation>
    </message>
    <message>
        <source>Wr&amp;ite fingerprint file</source>
        <translation>F&amp;ingerabdruckdatei schreiben</translation>
    </message>
    <message>
        <source>Write a fingerprint file into each output folder afterwards</source>
        <translation>Danach in jeden Ausgabeordner eine Fingerabdruckdatei schreiben</translation>
    </message>
    <message>
        <source>F&amp;LAC</source>
        <translation>FLA&amp;C</translation>
    </message>
    <message>
        <source>Encode to FLAC files</source>
        <translation>In FLAC-Dateien kodieren</translation>
    </message>
    <message>
        <source>FFP (fin&amp;gerprints)</source>
        <translation>FFP (Fin&amp;gerabdrücke)</translation>
    </message>
    <message>
        <source>WavPack</source>
        <translation>WavPack</translation>
    </message>
    <message>
        <source>Mode</source>
        <translation>Modus</translation>
    </message>
    <message>
        <source>How hard WavPack compresses; the sound is the same</source>
        <translation>Wie stark WavPack komprimiert; der Ton ist derselbe</translation>
    </message>
    <message>
        <source>Fas&amp;t</source>
        <translation>Schne&amp;ll</translation>
    </message>
    <message>
        <source>Compress quickly</source>
        <translation>Schnell komprimieren</translation>
    </message>
    <message>
        <source>Hi&amp;gh</source>
        <translation>Hoc&amp;h</translation>
    </message>
    <message>
        <source>Make small files</source>
        <translation>Kleine Dateien erzeugen</translation>
    </message>
    <message>
        <source>&amp;WavPack</source>
        <translation>&amp;WavPack</translation>
    </message>
    <message>
        <source>Encode to WavPack files</source>
        <translation>In WavPack-Dateien umwandeln</translation>
    </message>
</context>
<context>
    <name>OutputClaim</name>
    <message>
        <source>“%1” is being written by another task of this program.</source>
        <translation>„%1“ wird gerade von einer anderen Aufgabe dieses Programms geschrieben.</translation>
    </message>
    <message>
        <source>“%1” is being written by another program.</source>
        <translation>„%1“ wird gerade von einem anderen Programm geschrieben.</translation>
    </message>
    <message>
        <source>“%1” is being written by %2 (process %3).</source>
        <translation>„%1“ wird gerade von %2 geschrieben (Prozess %3).</translation>
    </message>
    <message>
        <source>“%1” is only half written, since its program was ended, and cannot be removed.</source>
        <translation>„%1“ ist nur halb geschrieben, da das Programm beendet wurde, und lässt sich nicht löschen.</translation>
    </message>
    <message>
        <source>“%1” was being written when its program was ended, and has been changed since. Look whether it is whole.</source>
        <translation>„%1“ wurde gerade geschrieben, als das Programm beendet wurde, und hat sich seitdem geändert. Sehen Sie nach, ob die Datei vollständig ist.</translation>
    </message>
    <message>
        <source>“%1” was only half written when its program was ended. It was removed.</source>
        <translation>„%1“ war erst halb geschrieben, als das Programm beendet wurde. Die Datei wurde gelöscht.</translation>
    </message>
    <message>
        <source>“%1” was being replaced when its program was ended. The earlier file is back.</source>
        <translation>„%1“ wurde gerade ersetzt, als das Programm beendet wurde. Die frühere Datei ist wieder da.</translation>
    </message>
    <message>
        <source>“%1” was being replaced when its program was ended. The earlier file is now “%2”.</source>
        <translation>„%1“ wurde gerade ersetzt, als das Programm beendet wurde. Die frühere Datei heißt jetzt „%2“.</translation>
    </message>
    <message>
        <source>“%1” cannot be written: %2</source>
        <translation>„%1“ kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>“%1” cannot be written, since “%2” is in the way. Remove that file.</source>
        <translation>„%1“ kann nicht geschrieben werden, da „%2“ im Weg ist. Löschen Sie diese Datei.</translation>
    </message>
</context>
<context>
    <name>OutputFolder</name>
    <message>
        <source>The output folder “%1” cannot be made: %2</source>
        <translation>Der Ausgabeordner „%1“ kann nicht angelegt werden: %2</translation>
    </message>
    <message>
        <source>The output folder has no name.</source>
        <translation>Der Ausgabeordner hat keinen Namen.</translation>
    </message>
    <message>
        <source>The output folder “%1” is not a folder.</source>
        <translation>Der Ausgabeordner „%1“ ist kein Ordner.</translation>
    </message>
    <message>
        <source>the folder “%1” does not exist.</source>
        <translation>den Ordner „%1“ gibt es nicht.</translation>
    </message>
    <message>
        <source>the folder “%1” cannot be written to.</source>
        <translation>in den Ordner „%1“ kann nicht geschrieben werden.</translation>
    </message>
</context>
<context>
    <name>OutputGuard</name>
    <message>
        <source>“%1” is a link that leads nowhere. Remove it, or choose another folder.</source>
        <translation>„%1“ ist ein Link, der nirgendwohin führt. Löschen Sie ihn oder wählen Sie einen anderen Ordner.</translation>
    </message>
    <message>
        <source>“%1” cannot be written: %2</source>
        <translation>„%1“ kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>“%1” could not be put aside</source>
        <translation>„%1“ konnte nicht beiseitegelegt werden</translation>
    </message>
</context>
<context>
    <name>Plan</name>
    <message>
        <source>The output folder “%1” does not exist.</source>
        <translation>Der Ausgabeordner „%1“ existiert nicht.</translation>
    </message>
    <message>
        <source>The output folder “%1” cannot be written to.</source>
        <translation>In den Ausgabeordner „%1“ kann nicht geschrieben werden.</translation>
    </message>
</context>
<context>
    <name>PlanPrinter</name>
    <message>
        <source>would overwrite %1</source>
        <translation>würde überschreiben: %1</translation>
    </message>
    <message>
        <source>would fail, since the output exists: %1</source>
        <translation>würde fehlschlagen, da die Ausgabedatei schon da ist: %1</translation>
    </message>
    <message>
        <source>would skip what is its own output: %1</source>
        <translation>würde übergehen, was seine eigene Ausgabedatei ist: %1</translation>
    </message>
    <message>
        <source>would skip what is no file: %1</source>
        <translation>würde übergehen, was keine Datei ist: %1</translation>
    </message>
    <message>
        <source>would skip a kind that cannot be converted: %1</source>
        <translation>würde eine Art übergehen, die sich nicht umwandeln lässt: %1</translation>
    </message>
    <message>
        <source>would skip what is of no kind to convert: %1</source>
        <translation>würde übergehen, was nichts zum Umwandeln ist: %1</translation>
    </message>
    <message>
        <source>would skip what has a folder that cannot be written to: %1</source>
        <translation>würde übergehen, in dessen Ordner nicht geschrieben werden kann: %1</translation>
    </message>
    <message>
        <source>would then write the checksum file %1</source>
        <translation>würde danach die Prüfsummendatei %1 schreiben</translation>
    </message>
    <message>
        <source>in the way: %1</source>
        <translation>im Weg: %1</translation>
    </message>
    <message>
        <source>would make the folder %1</source>
        <translation>würde den Ordner %1 anlegen</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln Datei</numerusform>
            <numerusform>%Ln Dateien</numerusform>
        </translation>
    </message>
    <message>
        <source>this program itself converts %1 to %2</source>
        <translation>dieses Programm selbst wandelt %1 in %2 um</translation>
    </message>
</context>
<context>
    <name>Presets</name>
    <message>
        <source>As in the settings</source>
        <translation>Wie in den Einstellungen</translation>
    </message>
    <message>
        <source>Archive</source>
        <translation>Archiv</translation>
    </message>
    <message>
        <source>Fast</source>
        <translation>Schnell</translation>
    </message>
</context>
<context>
    <name>PresetsCommand</name>
    <message>
        <source>warning: %1</source>
        <translation>Warnung: %1</translation>
    </message>
    <message>
        <source>%1  (comes with the program)</source>
        <translation>%1  (gehört zum Programm)</translation>
    </message>
    <message>
        <source>Replace the preset “%1”?</source>
        <translation>Die Voreinstellung „%1“ ersetzen?</translation>
    </message>
    <message>
        <source>What it says now is lost.</source>
        <translation>Ihr jetziger Inhalt geht verloren.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Replace “%1”?</source>
        <translation>„%1“ ersetzen?</translation>
    </message>
    <message>
        <source>The preset “%1” is for “%2”, which this version does not know.</source>
        <translation>Die Voreinstellung „%1“ ist für „%2“, das diese Version nicht kennt.</translation>
    </message>
    <message>
        <source>%1 Say --name NAME to keep it under another.</source>
        <translation>%1 Mit --name NAME wird sie unter einem anderen aufbewahrt.</translation>
    </message>
</context>
<context>
    <name>QUAVAsyncNSTask</name>
    <message>
        <source>“%1” could not be started: %2</source>
        <translation>„%1“ konnte nicht gestartet werden: %2</translation>
    </message>
</context>
<context>
    <name>ReportText</name>
    <message>
        <source>
[A part of this text could not be read back from the disk.]
</source>
        <translation>
[Ein Teil dieses Textes konnte nicht vom Datenträger zurückgelesen werden.]
</translation>
    </message>
</context>
<context>
    <name>RunEvents</name>
    <message>
        <source>done: %1</source>
        <translation>fertig: %1</translation>
    </message>
    <message>
        <source>failed: %1: %2</source>
        <translation>fehlgeschlagen: %1: %2</translation>
    </message>
    <message>
        <source>cancelled: %1</source>
        <translation>abgebrochen: %1</translation>
    </message>
    <message>
        <source>stalled: %1: %2 has neither read, written nor printed anything for %3</source>
        <translation>hängt: %1: %2 hat seit %3 nichts gelesen, geschrieben oder ausgegeben</translation>
    </message>
    <message>
        <source>warning: %1: %2</source>
        <translation>Warnung: %1: %2</translation>
    </message>
    <message numerus="yes">
        <source>%Ln done</source>
        <translation>
            <numerusform>%Ln fertig</numerusform>
            <numerusform>%Ln fertig</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln failed</source>
        <translation>
            <numerusform>%Ln fehlgeschlagen</numerusform>
            <numerusform>%Ln fehlgeschlagen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln cancelled</source>
        <translation>
            <numerusform>%Ln abgebrochen</numerusform>
            <numerusform>%Ln abgebrochen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln with the sound of the original</source>
        <translation>
            <numerusform>%Ln mit dem Ton des Originals</numerusform>
            <numerusform>%Ln mit dem Ton des Originals</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>warnings: %Ln</source>
        <translation>
            <numerusform>Warnungen: %Ln</numerusform>
            <numerusform>Warnungen: %Ln</numerusform>
        </translation>
    </message>
    <message>
        <source>time %1</source>
        <translation>Zeit %1</translation>
    </message>
    <message>
        <source>%1; tasks: %2</source>
        <comment>files, then tasks</comment>
        <translation>%1; Aufgaben: %2</translation>
    </message>
    <message>
        <source>stalled: %1: %2 has neither read, written nor printed anything for %3; after %4 it is ended</source>
        <translation>hängt: %1: %2 hat seit %3 nichts gelesen, geschrieben oder ausgegeben; nach %4 wird es beendet</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>true or false</source>
        <translation>true oder false</translation>
    </message>
    <message>
        <source>0 or 1</source>
        <translation>0 oder 1</translation>
    </message>
    <message>
        <source>a whole number from %1 on</source>
        <translation>eine ganze Zahl ab %1</translation>
    </message>
    <message>
        <source>a whole number from %1 to %2</source>
        <translation>eine ganze Zahl von %1 bis %2</translation>
    </message>
    <message>
        <source>The settings file “%1” is damaged. What could not be read has its default again.</source>
        <translation>Die Einstellungsdatei „%1“ ist beschädigt. Was nicht lesbar war, hat wieder seine Vorgabe.</translation>
    </message>
    <message>
        <source>The settings file “%1” is damaged. What could not be read has its default again; the damaged file was kept as “%2”.</source>
        <translation>Die Einstellungsdatei „%1“ ist beschädigt. Was nicht lesbar war, hat wieder seine Vorgabe; die beschädigte Datei wurde als „%2“ aufgehoben.</translation>
    </message>
    <message>
        <source>There is no setting “%1”.</source>
        <translation>Eine Einstellung „%1“ gibt es nicht.</translation>
    </message>
    <message>
        <source>“%1” takes %2, not “%3”.</source>
        <translation>„%1“ nimmt %2, nicht „%3“.</translation>
    </message>
</context>
<context>
    <name>SettingsCommand</name>
    <message>
        <source>  (default: %1)</source>
        <translation>  (Vorgabe: %1)</translation>
    </message>
    <message>
        <source>The settings file “%1” could not be written.</source>
        <translation>Die Einstellungsdatei „%1“ konnte nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>There is no setting “%1”.</source>
        <translation>Eine Einstellung „%1“ gibt es nicht.</translation>
    </message>
</context>
<context>
    <name>SoundProof</name>
    <message>
        <source>“%1” is of no kind that can be read here.</source>
        <translation>„%1“ ist von keiner Art, die hier gelesen werden kann.</translation>
    </message>
    <message>
        <source>its channels are %1 instead of %2</source>
        <translation>sie hat %1 Kanäle statt %2</translation>
    </message>
    <message>
        <source>its sample rate is %1 Hz instead of %2 Hz</source>
        <translation>ihre Abtastrate ist %1 Hz statt %2 Hz</translation>
    </message>
    <message>
        <source>its samples have %1 bits instead of %2</source>
        <translation>ihre Samples haben %1 Bit statt %2</translation>
    </message>
    <message>
        <source>it is %1 samples long instead of %2</source>
        <translation>sie ist %1 Samples lang statt %2</translation>
    </message>
    <message>
        <source>%1: its samples do not match the MD5 that it stores</source>
        <translation>%1: Die Samples passen nicht zu der MD5-Summe, die darin gespeichert ist</translation>
    </message>
    <message>
        <source>its samples are others</source>
        <translation>ihre Samples sind andere</translation>
    </message>
    <message>
        <source>“%1” ends before its header says it does</source>
        <translation>„%1“ endet früher, als ihr Header angibt</translation>
    </message>
</context>
<context>
    <name>SpecialFile</name>
    <message>
        <source>“%1” is a named pipe and was not opened; save what comes out of it as a file and add that.</source>
        <translation>„%1“ ist eine benannte Pipe und wurde nicht geöffnet; speichern Sie, was daraus kommt, als Datei und fügen Sie diese hinzu.</translation>
    </message>
    <message>
        <source>“%1” is a socket and was not opened; add a file instead.</source>
        <translation>„%1“ ist ein Socket und wurde nicht geöffnet; fügen Sie stattdessen eine Datei hinzu.</translation>
    </message>
    <message>
        <source>“%1” is a device and was not opened; save what it holds as a file and add that.</source>
        <translation>„%1“ ist ein Gerät und wurde nicht geöffnet; speichern Sie seinen Inhalt als Datei und fügen Sie diese hinzu.</translation>
    </message>
</context>
<context>
    <name>TabRun</name>
    <message>
        <source>“%1” does not exist.</source>
        <translation>„%1“ gibt es nicht.</translation>
    </message>
    <message>
        <source>Cancelled. Tools that run finish their file; once more ends them and the program at once.</source>
        <translation>Abgebrochen. Laufende Werkzeuge beenden ihre Datei; noch einmal beendet sie und das Programm sofort.</translation>
    </message>
    <message>
        <source>Ending the tools that run.</source>
        <translation>Die laufenden Werkzeuge werden beendet.</translation>
    </message>
    <message>
        <source>There is nothing to do.</source>
        <translation>Es gibt nichts zu tun.</translation>
    </message>
    <message>
        <source>The preset “%1” cannot be used: %2 Say --%3 yourself.</source>
        <translation>Die Voreinstellung „%1“ kann nicht benutzt werden: %2 Geben Sie --%3 selbst an.</translation>
    </message>
    <message>
        <source>warning: %1</source>
        <translation>Warnung: %1</translation>
    </message>
    <message>
        <source>--%1 has no effect with --%2 %3.</source>
        <translation>--%1 bewirkt nichts mit --%2 %3.</translation>
    </message>
</context>
<context>
    <name>Tabs</name>
    <message>
        <source>decode</source>
        <translation>Dekodieren</translation>
    </message>
    <message>
        <source>encode</source>
        <translation>Kodieren</translation>
    </message>
    <message>
        <source>checksum</source>
        <translation>Prüfsummen</translation>
    </message>
    <message>
        <source>about</source>
        <translation>Über</translation>
    </message>
</context>
<context>
    <name>TagLibTagsHelper</name>
    <message>
        <source>The picture is too large for a FLAC file and was left out.</source>
        <translation>Das Bild ist zu groß für eine FLAC-Datei und wurde ausgelassen.</translation>
    </message>
    <message>
        <source>The metadata blocks of the FLAC file cannot be read.</source>
        <translation>Die Metadatenblöcke der FLAC-Datei sind nicht lesbar.</translation>
    </message>
    <message>
        <source>The tags are too large for a FLAC file.</source>
        <translation>Die Tags sind zu groß für eine FLAC-Datei.</translation>
    </message>
    <message>
        <source>The file could not be saved.</source>
        <translation>Die Datei konnte nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>The tags are not in the saved file.</source>
        <translation>Die Tags sind nicht in der gespeicherten Datei.</translation>
    </message>
    <message>
        <source>The saved file has another length than its header says.</source>
        <translation>Die gespeicherte Datei hat eine andere Länge, als ihr Header angibt.</translation>
    </message>
    <message>
        <source>The file cannot be opened for writing: %1.</source>
        <translation>Die Datei lässt sich nicht zum Schreiben öffnen: %1.</translation>
    </message>
    <message>
        <source>comment block</source>
        <translation>Kommentarblock</translation>
    </message>
    <message>
        <source>The sound has another length after saving.</source>
        <translation>Der Ton hat nach dem Speichern eine andere Länge.</translation>
    </message>
    <message>
        <source>picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>The field %1 reads back differently.</source>
        <translation>Das Feld %1 liest sich anders zurück.</translation>
    </message>
</context>
<context>
    <name>TaskReport</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message numerus="yes">
        <source>%1: %Ln more files that are not shown</source>
        <translation>
            <numerusform>%1: %Ln weitere Datei, die nicht gezeigt wird</numerusform>
            <numerusform>%1: %Ln weitere Dateien, die nicht gezeigt werden</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TaskRow</name>
    <message>
        <source>Waiting...</source>
        <translation>Wartet ...</translation>
    </message>
    <message>
        <source>Stalled for %1; the tool can be ended</source>
        <translation>Hängt seit %1; das Werkzeug kann beendet werden</translation>
    </message>
    <message>
        <source>Canceled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Complete</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>TerminalPrompts</name>
    <message>
        <source>The answer was no; the option %1 answers with yes.</source>
        <translation>Die Antwort war Nein; die Option %1 antwortet mit Ja.</translation>
    </message>
    <message>
        <source>The answer was no.</source>
        <translation>Die Antwort war Nein.</translation>
    </message>
    <message>
        <source>The answer was no; the option --yes answers with yes.</source>
        <translation>Die Antwort war Nein; die Option --yes antwortet mit Ja.</translation>
    </message>
    <message>
        <source>y</source>
        <translation>j</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>n</source>
        <translation>n</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source>No file can be written there.</source>
        <translation>Dort kann keine Datei geschrieben werden.</translation>
    </message>
    <message>
        <source>This file exists and will be overwritten.  Are you sure you want to continue?</source>
        <translation>Diese Datei gibt es schon, sie wird überschrieben.  Möchten Sie wirklich fortfahren?</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
</context>
<context>
    <name>ToolOutput</name>
    <message>
        <source>%1 ended with the exit status %2</source>
        <translation>%1 endete mit dem Exit-Status %2</translation>
    </message>
</context>
<context>
    <name>ToolsCommand</name>
    <message>
        <source>missing; the Debian package “%1” brings it</source>
        <translation>fehlt; das Debian-Paket „%1“ enthält es</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
</context>
<context>
    <name>ToolsFolder</name>
    <message>
        <source>The tool “%1” is not in “%2”.</source>
        <translation>Das Werkzeug „%1“ ist nicht in „%2“.</translation>
    </message>
    <message>
        <source>The tool “%1” is not in “%2”. The Debian package “%3” brings it.</source>
        <translation>Das Werkzeug „%1“ ist nicht in „%2“. Das Debian-Paket „%3“ enthält es.</translation>
    </message>
</context>
<context>
    <name>Verdict</name>
    <message>
        <source>ok</source>
        <translation>in Ordnung</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>beschädigt</translation>
    </message>
    <message>
        <source>missing</source>
        <translation>fehlt</translation>
    </message>
    <message>
        <source>could not be read</source>
        <translation>nicht lesbar</translation>
    </message>
    <message>
        <source>%1: %2 (%3)</source>
        <translation>%1: %2 (%3)</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1; expected %2, found %3</source>
        <translation>%1; erwartet %2, gefunden %3</translation>
    </message>
</context>
<context>
    <name>VerdictCounts</name>
    <message numerus="yes">
        <source>%Ln ok</source>
        <translation>
            <numerusform>%Ln in Ordnung</numerusform>
            <numerusform>%Ln in Ordnung</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln failed</source>
        <translation>
            <numerusform>%Ln beschädigt</numerusform>
            <numerusform>%Ln beschädigt</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln missing</source>
        <translation>
            <numerusform>%Ln fehlend</numerusform>
            <numerusform>%Ln fehlend</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln could not be read</source>
        <translation>
            <numerusform>%Ln nicht lesbar</numerusform>
            <numerusform>%Ln nicht lesbar</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VerifyFFPTask</name>
    <message>
        <source>; the fingerprint that its beginning has is that of the list</source>
        <translation>; der Fingerabdruck an ihrem Anfang ist der aus der Liste</translation>
    </message>
    <message>
        <source>Verifying FLAC File</source>
        <translation>FLAC-Datei wird geprüft</translation>
    </message>
    <message>
        <source>flac found it damaged</source>
        <translation>flac fand sie beschädigt</translation>
    </message>
    <message>
        <source>Verifying %1: %2%</source>
        <translation>%1 wird geprüft: %2%</translation>
    </message>
</context>
<context>
    <name>VerifyFlacTask</name>
    <message>
        <source>Verifying</source>
        <translation>Wird geprüft</translation>
    </message>
</context>
<context>
    <name>VerifyListTask</name>
    <message>
        <source>Verifying MD5 file</source>
        <translation>MD5-Datei wird geprüft</translation>
    </message>
    <message>
        <source>Verigying ST5 File</source>
        <translation>ST5-Datei wird geprüft</translation>
    </message>
    <message>
        <source>Verifying FFP</source>
        <translation>FFP wird geprüft</translation>
    </message>
    <message>
        <source>“%1” names no file</source>
        <translation>„%1“ nennt keine Datei</translation>
    </message>
    <message>
        <source>“%1” is not in UTF-8; it can be read with “Accept other spellings” (--tolerant)</source>
        <translation>„%1“ ist nicht in UTF-8; mit „Andere Schreibweisen annehmen“ (--tolerant) ist die Datei lesbar</translation>
    </message>
    <message>
        <source>%1 : read as %2 (read strictly: no list of this kind)</source>
        <translation>%1 : als %2 gelesen (streng gelesen: keine Liste dieser Art)</translation>
    </message>
    <message>
        <source>%1 : read although it is not in UTF-8 (read strictly: empty)</source>
        <translation>%1 : gelesen, obwohl nicht in UTF-8 (streng gelesen: leer)</translation>
    </message>
    <message numerus="yes">
        <source>%1 : %Ln lines of text passed over</source>
        <translation>
            <numerusform>%1 : %Ln Textzeile übergangen</numerusform>
            <numerusform>%1 : %Ln Textzeilen übergangen</numerusform>
        </translation>
    </message>
    <message>
        <source>Names that begin with a slash were looked up below “%1”: %2</source>
        <translation>Namen, die mit einem Schrägstrich beginnen, wurden unter „%1“ gesucht: %2</translation>
    </message>
    <message>
        <source>Names that lead upwards with “..” were looked up from “%1” on: %2</source>
        <translation>Namen, die mit „..“ nach oben führen, wurden von „%1“ aus gesucht: %2</translation>
    </message>
    <message numerus="yes">
        <source>%Ln entries would match</source>
        <translation>
            <numerusform>%Ln Eintrag würde passen</numerusform>
            <numerusform>%Ln Einträge würden passen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files could be found and checked</source>
        <translation>
            <numerusform>%Ln Datei könnte gefunden und geprüft werden</numerusform>
            <numerusform>%Ln Dateien könnten gefunden und geprüft werden</numerusform>
        </translation>
    </message>
    <message>
        <source>it differs only in its spelling</source>
        <translation>nur die Schreibweise ist anders</translation>
    </message>
    <message>
        <source>“%1”: with “Accept other spellings” (--tolerant), %2</source>
        <translation>„%1“: mit „Andere Schreibweisen annehmen“ (--tolerant): %2</translation>
    </message>
    <message>
        <source> (read strictly: %1)</source>
        <translation> (streng gelesen: %1)</translation>
    </message>
    <message>
        <source>an entry that nothing can match</source>
        <translation>ein Eintrag, zu dem nichts passen kann</translation>
    </message>
    <message>
        <source>Verifying %1</source>
        <translation>%1 wird geprüft</translation>
    </message>
</context>
<context>
    <name>VerifyST5Task</name>
    <message>
        <source>Verifying: %1%</source>
        <translation>Wird geprüft: %1%</translation>
    </message>
    <message>
        <source>“%1”: %2</source>
        <translation>„%1“: %2</translation>
    </message>
</context>
<context>
    <name>VerifyToolTask</name>
    <message>
        <source>“%1” is no file.</source>
        <translation>„%1“ ist keine Datei.</translation>
    </message>
    <message>
        <source>Verifying: %1%</source>
        <translation>Wird geprüft: %1%</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>warning: %1</source>
        <translation>Warnung: %1</translation>
    </message>
</context>
<context>
    <name>quav::AboutPage</name>
    <message>
        <source>Quav Workbench %1</source>
        <translation>Quav Workbench %1</translation>
    </message>
    <message>
        <source>(Build %1)</source>
        <translation>(Build %1)</translation>
    </message>
    <message>
        <source>A workbench for people who keep music without loss. It encodes and decodes whole folders of files, several at a time, with the tools that are made for it, and takes their tags along.</source>
        <translation>Eine Werkbank für alle, die Musik verlustfrei aufbewahren. Sie kodiert und dekodiert ganze Ordner, mehrere Dateien gleichzeitig, mit den Werkzeugen, die dafür gemacht sind, und nimmt die Tags mit.</translation>
    </message>
</context>
<context>
    <name>quav::BaseTab</name>
    <message>
        <source>File types not supported by this tab</source>
        <translation>Dieser Reiter unterstützt diese Dateitypen nicht</translation>
    </message>
    <message>
        <source>Some files types were not recognized by this tab and were skipped</source>
        <translation>Einige Dateitypen kennt dieser Reiter nicht; sie wurden übergangen</translation>
    </message>
    <message>
        <source>Choose files for processing</source>
        <translation>Dateien zur Bearbeitung auswählen</translation>
    </message>
    <message>
        <source>Add Files</source>
        <translation>Dateien hinzufügen</translation>
    </message>
    <message>
        <source>Choose output directory</source>
        <translation>Ausgabeordner auswählen</translation>
    </message>
    <message>
        <source>You have chosen to delete the original files.  Are you sure you want to continue?</source>
        <translation>Sie haben gewählt, die Originaldateien zu löschen.  Möchten Sie wirklich fortfahren?</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>This tab is still at work. Wait until it has finished, or cancel it.</source>
        <translation>Dieser Reiter arbeitet noch. Warten Sie, bis er fertig ist, oder brechen Sie ihn ab.</translation>
    </message>
    <message>
        <source>Adding files</source>
        <translation>Dateien werden hinzugefügt</translation>
    </message>
</context>
<context>
    <name>quav::ChecksumPage</name>
    <message>
        <source>Saved %1</source>
        <translation>%1 gespeichert</translation>
    </message>
    <message>
        <source>Failed: %1</source>
        <translation>Fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>T&amp;est</source>
        <translation>&amp;Testen</translation>
    </message>
    <message numerus="yes">
        <source>T&amp;est %Ln files</source>
        <translation>
            <numerusform>%Ln Datei &amp;testen</numerusform>
            <numerusform>%Ln Dateien &amp;testen</numerusform>
        </translation>
    </message>
    <message>
        <source>Cr&amp;eate</source>
        <translation>Erzeu&amp;gen</translation>
    </message>
    <message>
        <source>Cr&amp;eate …</source>
        <translation>Erzeu&amp;gen …</translation>
    </message>
    <message>
        <source>V&amp;erify</source>
        <translation>P&amp;rüfen</translation>
    </message>
    <message numerus="yes">
        <source>V&amp;erify %Ln files</source>
        <translation>
            <numerusform>%Ln Datei p&amp;rüfen</numerusform>
            <numerusform>%Ln Dateien p&amp;rüfen</numerusform>
        </translation>
    </message>
    <message>
        <source>Output: a report</source>
        <translation>Ausgabe: ein Bericht</translation>
    </message>
    <message>
        <source>Output: beside the sources</source>
        <translation>Ausgabe: neben den Quellen</translation>
    </message>
    <message>
        <source>Output: asks for a path</source>
        <translation>Ausgabe: fragt nach einem Pfad</translation>
    </message>
</context>
<context>
    <name>quav::ChecksumTab</name>
    <message>
        <source>Save md5 as...</source>
        <translation>MD5 speichern unter ...</translation>
    </message>
    <message>
        <source>Save st5 as...</source>
        <translation>ST5 speichern unter ...</translation>
    </message>
    <message>
        <source>Save fingerprint as...</source>
        <translation>Fingerabdruck speichern unter ...</translation>
    </message>
    <message>
        <source>Verify FLAC</source>
        <translation>FLAC prüfen</translation>
    </message>
    <message>
        <source>Creating MD5</source>
        <translation>MD5 wird erzeugt</translation>
    </message>
    <message>
        <source>Create ST5</source>
        <translation>ST5 erzeugen</translation>
    </message>
    <message>
        <source>Creating the fingerprint file</source>
        <translation>Die Fingerabdruckdatei wird erstellt</translation>
    </message>
</context>
<context>
    <name>quav::ConversionPage</name>
    <message>
        <source>Output: beside the sources</source>
        <translation>Ausgabe: neben den Quellen</translation>
    </message>
    <message>
        <source>Output: asks for a folder</source>
        <translation>Ausgabe: fragt nach einem Ordner</translation>
    </message>
    <message>
        <source>%1 …</source>
        <translation>%1 …</translation>
    </message>
    <message>
        <source>&amp;Decode</source>
        <translation>De&amp;kodieren</translation>
    </message>
    <message numerus="yes">
        <source>&amp;Decode %Ln files</source>
        <translation>
            <numerusform>%Ln Datei de&amp;kodieren</numerusform>
            <numerusform>%Ln Dateien de&amp;kodieren</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Encode</source>
        <translation>&amp;Kodieren</translation>
    </message>
    <message numerus="yes">
        <source>&amp;Encode %Ln files</source>
        <translation>
            <numerusform>%Ln Datei &amp;kodieren</numerusform>
            <numerusform>%Ln Dateien &amp;kodieren</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quav::ConversionTab</name>
    <message numerus="yes">
        <source>These %Ln are write-protected:</source>
        <translation>
            <numerusform>Diese Datei ist schreibgeschützt:</numerusform>
            <numerusform>Diese %Ln Dateien sind schreibgeschützt:</numerusform>
        </translation>
    </message>
    <message>
        <source>One of the output files already exists and will be overwritten.  Are you sure you want to continue?</source>
        <translation>Eine der Ausgabedateien gibt es schon, sie wird überschrieben.  Möchten Sie wirklich fortfahren?</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message numerus="yes">
        <source>%Ln sources were kept, since not all of their tags, pictures and chunks are in the new files; the warnings say which. Delete them all the same?</source>
        <translation>
            <numerusform>%Ln Quelle blieb erhalten, da nicht alle ihre Tags, Bilder und Chunks in der neuen Datei sind; die Warnung nennt sie. Trotzdem löschen?</numerusform>
            <numerusform>%Ln Quellen blieben erhalten, da nicht alle ihre Tags, Bilder und Chunks in den neuen Dateien sind; die Warnungen nennen sie. Trotzdem löschen?</numerusform>
        </translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>the original has changed since it was read</source>
        <translation>das Original hat sich geändert, seit es gelesen wurde</translation>
    </message>
    <message>
        <source>“%1” is no longer the file that was made of it</source>
        <translation>„%1“ ist nicht mehr die Datei, die daraus gemacht wurde</translation>
    </message>
    <message>
        <source>Not every source could be deleted.</source>
        <translation>Nicht jede Quelle konnte gelöscht werden.</translation>
    </message>
</context>
<context>
    <name>quav::EncodeTab</name>
    <message>
        <source>One of the output files already exists and will be overwritten.  Select a different output directory and try again</source>
        <translation>Eine der Ausgabedateien existiert bereits und würde überschrieben.  Wählen Sie einen anderen Ausgabeordner und versuchen Sie es erneut</translation>
    </message>
</context>
<context>
    <name>quav::FactsReader</name>
    <message>
        <source>The file is not there any more.</source>
        <translation>Die Datei ist nicht mehr da.</translation>
    </message>
</context>
<context>
    <name>quav::FailuresButton</name>
    <message>
        <source>Show fail&amp;ures</source>
        <translation>Fehlschl&amp;äge zeigen</translation>
    </message>
    <message>
        <source>Show what failed in the last batch, and why</source>
        <translation>Zeigen, was im letzten Durchgang fehlgeschlagen ist und warum</translation>
    </message>
    <message>
        <source>Failures</source>
        <translation>Fehlschläge</translation>
    </message>
</context>
<context>
    <name>quav::FileList</name>
    <message>
        <source>%1 mono</source>
        <comment>bits and kHz</comment>
        <translation>%1 mono</translation>
    </message>
    <message numerus="yes">
        <source>%1, %n ch</source>
        <comment>bits and kHz</comment>
        <translation>
            <numerusform>%1, %n Kanal</numerusform>
            <numerusform>%1, %n Kanäle</numerusform>
        </translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message numerus="yes">
        <source>%n bytes behind the last whole CD sector</source>
        <translation>
            <numerusform>%n Byte hinter dem letzten ganzen CD-Sektor</numerusform>
            <numerusform>%n Bytes hinter dem letzten ganzen CD-Sektor</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quav::FileListView</name>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Delete selected file(s)</source>
        <translation>Ausgewählte Datei(en) entfernen</translation>
    </message>
    <message>
        <source>Delete files with extension:</source>
        <translation>Dateien entfernen mit der Endung:</translation>
    </message>
    <message>
        <source>(none)</source>
        <translation>(keine)</translation>
    </message>
    <message>
        <source>Drop files or folders here</source>
        <translation>Dateien oder Ordner hierher ziehen</translation>
    </message>
</context>
<context>
    <name>quav::GuiPrompts</name>
    <message>
        <source>Quav Workbench</source>
        <translation>Quav Workbench</translation>
    </message>
</context>
<context>
    <name>quav::MainWindow</name>
    <message>
        <source>Quav Workbench</source>
        <translation>Quav Workbench</translation>
    </message>
    <message>
        <source>Warnings</source>
        <translation>Warnungen</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Add Files…</source>
        <translation>Dateien &amp;hinzufügen …</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation>&amp;Fenster</translation>
    </message>
    <message>
        <source>&amp;Status Panel</source>
        <translation>&amp;Statusfenster</translation>
    </message>
</context>
<context>
    <name>quav::OptionForm</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
</context>
<context>
    <name>quav::OutputWindow</name>
    <message>
        <source>Only the &amp;failures</source>
        <translation>Nur &amp;Fehler</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>Save this text as a file (Ctrl+S)</source>
        <translation>Diesen Text als Datei speichern (Strg+S)</translation>
    </message>
    <message>
        <source>Close this window (Ctrl+W)</source>
        <translation>Dieses Fenster schließen (Strg+W)</translation>
    </message>
    <message>
        <source>Show only the files that are not in order, and why</source>
        <translation>Nur die Dateien zeigen, die nicht in Ordnung sind, und warum</translation>
    </message>
    <message numerus="yes">
        <source>

[About %Ln MB are left out here. Save the text to have all of it.]

</source>
        <translation>
            <numerusform>

[Etwa %Ln MB ist hier ausgelassen. Speichern Sie den Text, um alles zu haben.]

</numerusform>
            <numerusform>

[Etwa %Ln MB sind hier ausgelassen. Speichern Sie den Text, um alles zu haben.]

</numerusform>
        </translation>
    </message>
    <message>
        <source>Save the text</source>
        <translation>Text speichern</translation>
    </message>
    <message>
        <source>The text could not be saved</source>
        <translation>Der Text konnte nicht gespeichert werden</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>quav::PlannedTab</name>
    <message numerus="yes">
        <source>and %Ln more</source>
        <translation>
            <numerusform>und %Ln weitere</numerusform>
            <numerusform>und %Ln weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>“%1” and “%2” would both write the same output file. Convert them one after the other into different folders.</source>
        <translation>„%1“ und „%2“ würden beide dieselbe Ausgabedatei schreiben. Wandeln Sie sie nacheinander in verschiedene Ordner um.</translation>
    </message>
    <message>
        <source>Output file &quot; %1&quot; already exists.skipping</source>
        <translation>Die Ausgabedatei „%1“ existiert bereits und wird übersprungen.</translation>
    </message>
    <message>
        <source>Files of these kinds cannot be converted here yet. They were left out.</source>
        <translation>Dateien dieser Arten können hier noch nicht umgewandelt werden. Sie wurden ausgelassen.</translation>
    </message>
    <message>
        <source>The folders of these files cannot be written to. They were left out.</source>
        <translation>In die Ordner dieser Dateien kann nicht geschrieben werden. Sie wurden ausgelassen.</translation>
    </message>
</context>
<context>
    <name>quav::PresetBar</name>
    <message>
        <source>&amp;Preset</source>
        <translation>&amp;Voreinstellung</translation>
    </message>
    <message>
        <source>Preset</source>
        <translation>Voreinstellung</translation>
    </message>
    <message>
        <source>Give all options the values of a preset</source>
        <translation>Allen Optionen die Werte einer Voreinstellung geben</translation>
    </message>
    <message>
        <source>changed</source>
        <translation>geändert</translation>
    </message>
    <message>
        <source>Save and manage presets</source>
        <translation>Voreinstellungen speichern und verwalten</translation>
    </message>
    <message>
        <source>&amp;Save As…</source>
        <translation>&amp;Speichern unter …</translation>
    </message>
    <message>
        <source>&amp;Rename…</source>
        <translation>&amp;Umbenennen …</translation>
    </message>
    <message>
        <source>&amp;Delete…</source>
        <translation>&amp;Löschen …</translation>
    </message>
    <message>
        <source>&amp;Export…</source>
        <translation>&amp;Exportieren …</translation>
    </message>
    <message>
        <source>&amp;Import…</source>
        <translation>&amp;Importieren …</translation>
    </message>
    <message>
        <source>The options were changed since this preset was chosen</source>
        <translation>Seit der Wahl dieser Voreinstellung wurden Optionen geändert</translation>
    </message>
</context>
<context>
    <name>quav::PresetChooser</name>
    <message>
        <source>The preset could not be used or changed</source>
        <translation>Die Voreinstellung konnte nicht benutzt oder geändert werden</translation>
    </message>
    <message>
        <source>The preset “%1” was used in part</source>
        <translation>Die Voreinstellung „%1“ wurde zum Teil benutzt</translation>
    </message>
    <message>
        <source>Save Preset</source>
        <translation>Voreinstellung speichern</translation>
    </message>
    <message>
        <source>A name for these options:</source>
        <translation>Ein Name für diese Optionen:</translation>
    </message>
    <message>
        <source>Replace the preset “%1”?</source>
        <translation>Die Voreinstellung „%1“ ersetzen?</translation>
    </message>
    <message>
        <source>What it says now is lost.</source>
        <translation>Ihr jetziger Inhalt geht verloren.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Rename Preset</source>
        <translation>Voreinstellung umbenennen</translation>
    </message>
    <message>
        <source>Its new name:</source>
        <translation>Ihr neuer Name:</translation>
    </message>
    <message>
        <source>Delete the preset “%1”?</source>
        <translation>Die Voreinstellung „%1“ löschen?</translation>
    </message>
    <message>
        <source>The options stay as they stand.</source>
        <translation>Die Optionen bleiben, wie sie sind.</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Export Preset</source>
        <translation>Voreinstellung exportieren</translation>
    </message>
    <message>
        <source>Import Presets</source>
        <translation>Voreinstellungen importieren</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importieren</translation>
    </message>
    <message>
        <source>Import Preset</source>
        <translation>Voreinstellung importieren</translation>
    </message>
    <message>
        <source>There is a preset “%1” already. A name for the new one:</source>
        <translation>Es gibt schon eine Voreinstellung „%1“. Ein Name für die neue:</translation>
    </message>
</context>
<context>
    <name>quav::Presets</name>
    <message>
        <source>A preset needs a name.</source>
        <translation>Eine Vorlage braucht einen Namen.</translation>
    </message>
    <message>
        <source>The preset “%1” comes with the program and stays as it is. Choose another name.</source>
        <translation>Die Vorlage „%1“ gehört zum Programm und bleibt, wie sie ist. Wählen Sie einen anderen Namen.</translation>
    </message>
    <message>
        <source>The preset “%1” is for another tab: “%2”.</source>
        <translation>Die Vorlage „%1“ ist für einen anderen Reiter: „%2“.</translation>
    </message>
    <message>
        <source>There is a preset “%1” already.</source>
        <translation>Eine Vorlage „%1“ gibt es schon.</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>„%1“</translation>
    </message>
    <message>
        <source>The preset could not be written to “%1” (%2). See that its folder can be written to and has room.</source>
        <translation>Die Voreinstellung konnte nicht nach „%1“ geschrieben werden (%2). Sorgen Sie dafür, dass der Ordner beschreibbar ist und Platz hat.</translation>
    </message>
    <message>
        <source>The preset “%1” could not be read: %2</source>
        <translation>Die Voreinstellung „%1“ konnte nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>The preset has what this version does not know: %1.</source>
        <translation>Die Voreinstellung enthält, was diese Version nicht kennt: %1.</translation>
    </message>
    <message>
        <source>There is no preset “%1” for %2. There are: %3.</source>
        <translation>Es gibt keine Voreinstellung „%1“ für %2. Es gibt: %3.</translation>
    </message>
    <message>
        <source>The preset “%1” comes with the program and stays as it is.</source>
        <translation>Die Voreinstellung „%1“ gehört zum Programm und bleibt, wie sie ist.</translation>
    </message>
    <message>
        <source>This name is too long for a preset. Choose a shorter one.</source>
        <translation>Dieser Name ist zu lang für eine Voreinstellung. Wählen Sie einen kürzeren.</translation>
    </message>
    <message>
        <source>“%1” is no preset: it has no options of a tab.</source>
        <translation>„%1“ ist keine Voreinstellung: Optionen eines Reiters fehlen.</translation>
    </message>
    <message>
        <source>“%1” is no preset: %2 (at byte %3). Repair it or delete it.</source>
        <translation>„%1“ ist keine Voreinstellung: %2 (bei Byte %3). Reparieren oder löschen Sie sie.</translation>
    </message>
    <message>
        <source>The folder “%1” for presets could not be made. See that the folder above it can be written to.</source>
        <translation>Der Ordner „%1“ für Voreinstellungen konnte nicht angelegt werden. Sorgen Sie dafür, dass der Ordner darüber beschreibbar ist.</translation>
    </message>
    <message>
        <source>The preset “%1” could not be deleted (%2). See that its folder can be written to.</source>
        <translation>Die Voreinstellung „%1“ konnte nicht gelöscht werden (%2). Sorgen Sie dafür, dass ihr Ordner beschreibbar ist.</translation>
    </message>
    <message>
        <source>There is a preset “%1” already. Choose another name.</source>
        <translation>Es gibt schon eine Voreinstellung „%1“. Wählen Sie einen anderen Namen.</translation>
    </message>
</context>
<context>
    <name>quav::QUAVController</name>
    <message>
        <source>Tasks in Progress</source>
        <translation>Laufende Aufgaben</translation>
    </message>
    <message numerus="yes">
        <source>There are %n tasks in the queue.  Are you sure you want to quit?</source>
        <translation>
            <numerusform>In der Warteschlange ist %n Aufgabe.  Möchten Sie wirklich beenden?</numerusform>
            <numerusform>In der Warteschlange sind %n Aufgaben.  Möchten Sie wirklich beenden?</numerusform>
        </translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>Are you sure you want to quit?</source>
        <translation>Möchten Sie wirklich beenden?</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Adding files</source>
        <translation>Dateien werden hinzugefügt</translation>
    </message>
</context>
<context>
    <name>quav::QUAVTaskQueue</name>
    <message>
        <source>Audio files are being worked on</source>
        <translation>Audiodateien werden bearbeitet</translation>
    </message>
    <message>
        <source>Quav task(s) completed</source>
        <translation>Quav-Aufgabe(n) erledigt</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>quav::StatusPanel</name>
    <message>
        <source>Clear &amp;errors</source>
        <translation>F&amp;ehler entfernen</translation>
    </message>
    <message>
        <source>&amp;Cancel all</source>
        <translation>&amp;Alle abbrechen</translation>
    </message>
    <message>
        <source>Tasks</source>
        <translation>Aufgaben</translation>
    </message>
    <message>
        <source>Remove the rows of tasks that failed</source>
        <translation>Die Zeilen fehlgeschlagener Aufgaben entfernen</translation>
    </message>
    <message>
        <source>Cancel what waits, and what runs as soon as its tool has ended</source>
        <translation>Abbrechen, was wartet, und was läuft, sobald sein Werkzeug geendet hat</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message numerus="yes">
        <source>Status: %Ln failed</source>
        <translation>
            <numerusform>Status: %Ln fehlgeschlagen</numerusform>
            <numerusform>Status: %Ln fehlgeschlagen</numerusform>
        </translation>
    </message>
    <message>
        <source>Status: %L1 running, %L2 waiting</source>
        <translation>Status: %L1 in Arbeit, %L2 wartend</translation>
    </message>
    <message>
        <source>%1 · %2 left</source>
        <translation>%1 · noch %2</translation>
    </message>
    <message>
        <source>&amp;Show what the tool said</source>
        <translation>Ausgabe des &amp;Werkzeugs zeigen</translation>
    </message>
    <message>
        <source>&amp;End the tool</source>
        <translation>Werkzeug &amp;beenden</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
</context>
<context>
    <name>quav::TabPage</name>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>&amp;Clear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>&amp;Add…</source>
        <translation>&amp;Hinzufügen …</translation>
    </message>
    <message>
        <source>Choose files to add to the list</source>
        <translation>Dateien auswählen, die in die Liste kommen</translation>
    </message>
    <message>
        <source>Take the selected files off the list (Delete); the files stay</source>
        <translation>Die ausgewählten Dateien aus der Liste nehmen (Entf); die Dateien bleiben</translation>
    </message>
    <message>
        <source>Take all files off the list; the files stay</source>
        <translation>Alle Dateien aus der Liste nehmen; die Dateien bleiben</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln Datei</numerusform>
            <numerusform>%Ln Dateien</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quav::TaskRowDelegate</name>
    <message>
        <source>End the tool</source>
        <translation>Das Werkzeug beenden</translation>
    </message>
    <message>
        <source>Canceled as soon as what runs has ended</source>
        <translation>Wird abgebrochen, sobald das Laufende geendet hat</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>quav::TaskRowsModel</name>
    <message>
        <source>Canceling · %1</source>
        <translation>Wird abgebrochen · %1</translation>
    </message>
</context>
<context>
    <name>quav::TerminalView</name>
    <message numerus="yes">
        <source>%Ln running</source>
        <translation>
            <numerusform>%Ln in Arbeit</numerusform>
            <numerusform>%Ln in Arbeit</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln waiting</source>
        <translation>
            <numerusform>%Ln wartend</numerusform>
            <numerusform>%Ln wartend</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln done</source>
        <translation>
            <numerusform>%Ln fertig</numerusform>
            <numerusform>%Ln fertig</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln failed</source>
        <translation>
            <numerusform>%Ln fehlgeschlagen</numerusform>
            <numerusform>%Ln fehlgeschlagen</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 left</source>
        <translation>noch %1</translation>
    </message>
</context>
<context>
    <name>quav::WarningsLine</name>
    <message>
        <source>S&amp;how</source>
        <translation>&amp;Zeigen</translation>
    </message>
    <message>
        <source>Show what tools warned of although they succeeded</source>
        <translation>Zeigen, wovor Werkzeuge warnten, obwohl sie Erfolg hatten</translation>
    </message>
    <message>
        <source>Show the warnings</source>
        <translation>Die Warnungen zeigen</translation>
    </message>
    <message numerus="yes">
        <source>%Ln warnings</source>
        <translation>
            <numerusform>%Ln Warnung</numerusform>
            <numerusform>%Ln Warnungen</numerusform>
        </translation>
    </message>
    <message>
        <source>Warnings</source>
        <translation>Warnungen</translation>
    </message>
</context>
<context>
    <name>quav::WorkLine</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>%1: %L2 of %L3</source>
        <translation>%1: %L2 von %L3</translation>
    </message>
    <message>
        <source>%1: %L2</source>
        <translation>%1: %L2</translation>
    </message>
</context>
</TS>
