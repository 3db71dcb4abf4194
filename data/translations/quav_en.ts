<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>BatchSummary</name>
    <message numerus="yes">
        <source>%Ln tasks are done.</source>
        <translation>
            <numerusform>%Ln task is done.</numerusform>
            <numerusform>%Ln tasks are done.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tasks were canceled.</source>
        <translation>
            <numerusform>%Ln task was canceled.</numerusform>
            <numerusform>%Ln tasks were canceled.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files are damaged.</source>
        <translation>
            <numerusform>%Ln file is damaged.</numerusform>
            <numerusform>%Ln files are damaged.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files are missing.</source>
        <translation>
            <numerusform>%Ln file is missing.</numerusform>
            <numerusform>%Ln files are missing.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files could not be read.</source>
        <translation>
            <numerusform>%Ln file could not be read.</numerusform>
            <numerusform>%Ln files could not be read.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tasks failed: %1</source>
        <translation>
            <numerusform>%Ln task failed: %1</numerusform>
            <numerusform>%Ln tasks failed: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tasks failed.</source>
        <translation>
            <numerusform>%Ln task failed.</numerusform>
            <numerusform>%Ln tasks failed.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln outputs have the sound of their originals.</source>
        <translation>
            <numerusform>%Ln output has the sound of its original.</numerusform>
            <numerusform>%Ln outputs have the sound of their originals.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>BoundedLines</name>
    <message numerus="yes">
        <source>and %Ln more that are not shown</source>
        <translation>
            <numerusform>and one more that is not shown</numerusform>
            <numerusform>and %Ln more that are not shown</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CreateMD5Task</name>
    <message numerus="yes">
        <source>%Ln of the files are MD5 lists, too, such as “%1”: their entries will fail once those lists are made again</source>
        <translation>
            <numerusform>“%1” is an MD5 list, too: its entry will fail once that list is made again</numerusform>
            <numerusform>%Ln of the files are MD5 lists, too, such as “%1”: their entries will fail once those lists are made again</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ListNames</name>
    <message numerus="yes">
        <source>%Ln names in this list will not lead to their files.</source>
        <translation>
            <numerusform>%Ln name in this list will not lead to its file.</numerusform>
            <numerusform>%Ln names in this list will not lead to their files.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln names stand in it more than once.</source>
        <translation>
            <numerusform>%Ln name stands in it more than once.</numerusform>
            <numerusform>%Ln names stand in it more than once.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Losses</name>
    <message numerus="yes">
        <source>%Ln pictures</source>
        <translation>
            <numerusform>%Ln picture</numerusform>
            <numerusform>%Ln pictures</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>the descriptions of %Ln pictures</source>
        <translation>
            <numerusform>the description of a picture</numerusform>
            <numerusform>the descriptions of %Ln pictures</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n others</source>
        <translation>
            <numerusform>%n other</numerusform>
            <numerusform>%n others</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln values of %1</source>
        <translation>
            <numerusform>%Ln value of %1</numerusform>
            <numerusform>%Ln values of %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln bytes behind the last chunk</source>
        <translation>
            <numerusform>%Ln byte behind the last chunk</numerusform>
            <numerusform>%Ln bytes behind the last chunk</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PlanPrinter</name>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RunEvents</name>
    <message numerus="yes">
        <source>%Ln done</source>
        <translation>
            <numerusform>%Ln done</numerusform>
            <numerusform>%Ln done</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln failed</source>
        <translation>
            <numerusform>%Ln failed</numerusform>
            <numerusform>%Ln failed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln cancelled</source>
        <translation>
            <numerusform>%Ln cancelled</numerusform>
            <numerusform>%Ln cancelled</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln with the sound of the original</source>
        <translation>
            <numerusform>%Ln with the sound of the original</numerusform>
            <numerusform>%Ln with the sound of the original</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>warnings: %Ln</source>
        <translation>
            <numerusform>warnings: %Ln</numerusform>
            <numerusform>warnings: %Ln</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TaskReport</name>
    <message numerus="yes">
        <source>%1: %Ln more files that are not shown</source>
        <translation>
            <numerusform>%1: %Ln more file that is not shown</numerusform>
            <numerusform>%1: %Ln more files that are not shown</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VerdictCounts</name>
    <message numerus="yes">
        <source>%Ln ok</source>
        <translation>
            <numerusform>%Ln ok</numerusform>
            <numerusform>%Ln ok</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln failed</source>
        <translation>
            <numerusform>%Ln failed</numerusform>
            <numerusform>%Ln failed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln missing</source>
        <translation>
            <numerusform>%Ln missing</numerusform>
            <numerusform>%Ln missing</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln could not be read</source>
        <translation>
            <numerusform>%Ln could not be read</numerusform>
            <numerusform>%Ln could not be read</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VerifyListTask</name>
    <message numerus="yes">
        <source>%1 : %Ln lines of text passed over</source>
        <translation>
            <numerusform>%1 : %Ln line of text passed over</numerusform>
            <numerusform>%1 : %Ln lines of text passed over</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln entries would match</source>
        <translation>
            <numerusform>%Ln entry would match</numerusform>
            <numerusform>%Ln entries would match</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files could be found and checked</source>
        <translation>
            <numerusform>%Ln file could be found and checked</numerusform>
            <numerusform>%Ln files could be found and checked</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quav::ChecksumPage</name>
    <message numerus="yes">
        <source>T&amp;est %Ln files</source>
        <translation>
            <numerusform>T&amp;est %Ln file</numerusform>
            <numerusform>T&amp;est %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>V&amp;erify %Ln files</source>
        <translation>
            <numerusform>V&amp;erify %Ln file</numerusform>
            <numerusform>V&amp;erify %Ln files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quav::ConversionPage</name>
    <message numerus="yes">
        <source>&amp;Decode %Ln files</source>
        <translation>
            <numerusform>&amp;Decode %Ln file</numerusform>
            <numerusform>&amp;Decode %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>&amp;Encode %Ln files</source>
        <translation>
            <numerusform>&amp;Encode %Ln file</numerusform>
            <numerusform>&amp;Encode %Ln files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quav::ConversionTab</name>
    <message numerus="yes">
        <source>These %Ln are write-protected:</source>
        <translation>
            <numerusform>This one is write-protected:</numerusform>
            <numerusform>These %Ln are write-protected:</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln sources were kept, since not all of their tags, pictures and chunks are in the new files; the warnings say which. Delete them all the same?</source>
        <translation>
            <numerusform>One source was kept, since not all of its tags, pictures and chunks are in the new file; its warning says which. Delete it all the same?</numerusform>
            <numerusform>%Ln sources were kept, since not all of their tags, pictures and chunks are in the new files; the warnings say which. Delete them all the same?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quav::FileList</name>
    <message numerus="yes">
        <source>%1, %n ch</source>
        <comment>bits and kHz</comment>
        <translation>
            <numerusform>%1, %n ch</numerusform>
            <numerusform>%1, %n ch</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n bytes behind the last whole CD sector</source>
        <translation>
            <numerusform>%n byte behind the last whole CD sector</numerusform>
            <numerusform>%n bytes behind the last whole CD sector</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quav::OutputWindow</name>
    <message numerus="yes">
        <source>

[About %Ln MB are left out here. Save the text to have all of it.]

</source>
        <translation>
            <numerusform>

[About %Ln MB is left out here. Save the text to have all of it.]

</numerusform>
            <numerusform>

[About %Ln MB are left out here. Save the text to have all of it.]

</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quav::PlannedTab</name>
    <message numerus="yes">
        <source>and %Ln more</source>
        <translation>
            <numerusform>and %Ln more</numerusform>
            <numerusform>and %Ln more</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quav::QUAVController</name>
    <message numerus="yes">
        <source>There are %n tasks in the queue.  Are you sure you want to quit?</source>
        <translation>
            <numerusform>There are %n tasks in the queue.  Are you sure you want to quit?</numerusform>
            <numerusform>There are %n tasks in the queue.  Are you sure you want to quit?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quav::StatusPanel</name>
    <message numerus="yes">
        <source>Status: %Ln failed</source>
        <translation>
            <numerusform>Status: %Ln failed</numerusform>
            <numerusform>Status: %Ln failed</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quav::TabPage</name>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quav::TerminalView</name>
    <message numerus="yes">
        <source>%Ln running</source>
        <translation>
            <numerusform>%Ln running</numerusform>
            <numerusform>%Ln running</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln waiting</source>
        <translation>
            <numerusform>%Ln waiting</numerusform>
            <numerusform>%Ln waiting</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln done</source>
        <translation>
            <numerusform>%Ln done</numerusform>
            <numerusform>%Ln done</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln failed</source>
        <translation>
            <numerusform>%Ln failed</numerusform>
            <numerusform>%Ln failed</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quav::WarningsLine</name>
    <message numerus="yes">
        <source>%Ln warnings</source>
        <translation>
            <numerusform>%Ln warning</numerusform>
            <numerusform>%Ln warnings</numerusform>
        </translation>
    </message>
</context>
</TS>
