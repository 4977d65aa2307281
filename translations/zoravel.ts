<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" sourcelanguage="en">
<context>
    <name>CompileProgressDialog</name>
    <message>
        <source>Create database</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File %1 of %2: %3</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CreateDatabase</name>
    <message>
        <source>Create database</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Database version:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1.0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Data release:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>3.0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Title:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ZORAVEL collection of molecular photoionisation spectra, Tarnwick Institute, 2020-2026</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set database</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add species</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Compact</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Species files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Database will be saved to...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>JSON Files (*.json)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select JSON Files to be added to the database</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>At least one species has to be added to the database.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Where shall I save the database to? (Click on Set database)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DownloadNotice</name>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel the download</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fetching the structure image ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fetching %1 structure images ...</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HiddenTextMarks</name>
    <message>
        <source> … %1 more </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This text is too long to be shown with its formatting, or as a whole. It stays as it is until it is changed. A grey mark stands for characters that are not shown, here %1. They are copied, cut and deleted with the mark.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>ZORAVEL Entry Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Species</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>S&amp;pectrum</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>toolBar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Species profile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Aliases</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mass / amu</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sum formula</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>InChI</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CAS number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Download the structure image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Struct</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PubChem CID</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>eV</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comment / DOI</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>AIE</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>AIE / eV</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comment / DOI of the AIE</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>VIE</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>VIE / eV</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comment / DOI of the VIE</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Structure image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl+O</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl+S</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl+Shift+O</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl+Shift+C</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl+Shift+V</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl+Shift+N</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl+Shift+D</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Clean</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl+D</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save &amp;as</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>sup</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl + P</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl+P</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>sub</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl + B</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl+B</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Previous File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create &amp;database...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spectrum %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spectrum %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spectra</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>(untitled)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ZORAVEL Entry Edit - %1%2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The species has been modified.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to save your changes?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Success</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Species database created successfully.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Failed to create species database.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not open file: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid species type in file: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Text Field Focused</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please focus on a text field to apply formatting.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please select text to format.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid Input</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please enter a valid CAS number (e.g., 58-08-2).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Download Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Failed to download the image.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Failed to load the image data.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It is larger than %1 MB.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 by %2 pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image Menu</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The clipboard does not contain an image.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It has more pixels than an entry can hold.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No JSON Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No JSON files found in the directory.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Current File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No current file loaded to step from.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Current file is not in the directory.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Species Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No species JSON files found in the directory.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Other Species Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No other species JSON files found in the directory.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not a number with a decimal point: it is saved as 0.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Species JSON File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>JSON Files (*.json);;All Files (*)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File Not Found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file %1 does not exist.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid Species File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file %1 is not a valid species file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Species JSON File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not open file for writing.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It is larger than %1 MB, without the blanks and line ends between its values.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Spectrum JSON File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not open file for reading</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spectrum not found in JSON file. Load aborted.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No active spectrum window to save.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Spectrum</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not open file for writing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No spectrum window is selected.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clipboard does not contain a valid spectrum.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Format error, cannot paste.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PointEditor</name>
    <message>
        <source>Nothing is pasted: a line of %1 characters is too long for a point.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SpectrumChartView</name>
    <message>
        <source>no points</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 points, none of them finite</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>one point at %1 eV, intensity %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 points from %2 eV to %3 eV, highest at %4 eV, intensity %5</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spectrum without a title</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SpectrumModel</name>
    <message>
        <source>Cannot resample line spectra</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Energy range too large to resample</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SpectrumWindow</name>
    <message>
        <source>Title</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Uploader</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Created</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spect. DOI</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Type</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ms-TPES</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ms-SPES</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TPES</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PES</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>FC simulation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PIS</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Further citations (experiment, source, light source etc.)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Source</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Source T / K</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resolution / meV</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flux normalization</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date &amp; facility</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comments: mass resolution, extraction field, details of spectral treatment, sample / isomeric purity etc.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spectrum, I(hv / eV)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Line spectrum</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Normalize</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sparse</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Replace commas by dots</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>, → .</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Chart of the spectrum</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>hν / eV</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Intensity / arb. unit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Line %1 is not a point of two finite numbers.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 lines are not points of two finite numbers. The first is line %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spectrum, I(hv / eV) (%1 lines)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
