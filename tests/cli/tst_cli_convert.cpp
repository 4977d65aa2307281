// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/jsonfile.h"
#include "support/files.h"
#include "testconsole.h"
#include "testfiles.h"

#include <QDate>
#include <QDir>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

namespace
{

const QByteArray furan = ZORAVEL_EXAMPLES "/furan.json";

} // namespace

// zoravel convert.
class TestCliConvert : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QDir::setCurrent(m_folder->path());
    }

    void aSpectrumComesBackFromEveryFormat_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArrayList>("options");
        QTest::newRow("csv") << QByteArray("x.csv") << QByteArrayList();
        QTest::newRow("csv, comma") << QByteArray("x.csv") << QByteArrayList{"--decimal", "comma"};
        QTest::newRow("tsv") << QByteArray("x.tsv") << QByteArrayList();
        QTest::newRow("jcamp") << QByteArray("x.jdx") << QByteArrayList();
        QTest::newRow("json") << QByteArray("x.json") << QByteArrayList();
    }
    void aSpectrumComesBackFromEveryFormat()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArrayList, options);
        const QJsonObject species = fileObject(QString::fromUtf8(furan));
        for (const char *number : {"1", "2", "3"}) {
            TestConsole console;
            QCOMPARE(
                console.run(QByteArrayList{"convert", "-s", number, "-o", name, furan} + options),
                0);
            QCOMPARE(console.output + console.errors, "");
            QCOMPARE(console.run({"convert", "-t", "json", name}), 0);
            QCOMPARE(console.errors, "");
            QJsonObject spectrum = QJsonDocument::fromJson(console.output).object();
            QCOMPARE(spectrum.take(QLatin1String("Type")).toString(),
                     QStringLiteral("Spectrum v1"));
            QCOMPARE(spectrum,
                     species[QLatin1String("Dataset") + QString::fromUtf8(number)].toObject());
        }
    }

    void fieldsAreSetAndTodayIsTheDate()
    {
        TestConsole console;
        console.input = "1,2\n";
        QCOMPARE(console.run({"convert", "-t", "json", "--meta", "title=a=b", "--meta",
                              "SpectType=pes", "--meta", "Source=lamp", "-"}),
                 0);
        const QJsonObject spectrum = QJsonDocument::fromJson(console.output).object();
        QCOMPARE(spectrum[QLatin1String("Title")].toString(), QStringLiteral("a=b"));
        QCOMPARE(spectrum[QLatin1String("Source")].toString(), QStringLiteral("lamp"));
        QCOMPARE(spectrum[QLatin1String("SpectType")].toInt(), 3);
        QCOMPARE(spectrum[QLatin1String("E")].toArray(), QJsonArray{1});
        const QString date = spectrum[QLatin1String("CreatedDate")].toString();
        QVERIFY(QDate::fromString(date, Qt::ISODate).daysTo(QDate::currentDate()) <= 1);
        QCOMPARE(spectrum.size(), 16);
    }

    void whatDoesNotBelongToTheSpectrumIsSaid()
    {
        writeFile(QStringLiteral("s.json"), R"({"Type": "Spectrum v1", "SpectType": 0, "AIE": "9",
            "Foo": 1, "T": 300, "DOI": "x", "DOI": "", "CreatedDate": "x", "E": [1.23456789], "I": [2]})");
        TestConsole console;
        QCOMPARE(console.run({"convert", "-t", "csv", "s.json"}), 0);
        QCOMPARE(console.errors, "zoravel: s.json: not kept: /DOI: the key is written again below\n"
                                 "zoravel: s.json: not kept: AIE: 9\n"
                                 "zoravel: s.json: not kept: Foo: 1\n"
                                 "zoravel: s.json: not kept: T: 300\n");
        QVERIFY(console.output.endsWith("E / eV,I\n1.23456789,2\n"));
    }

    void ofAFieldThatIsKeptInPartBothAreSaid()
    {
        TestConsole console;
        const auto run = [&](const QByteArray &field) {
            console.input = "9.1 1\n9.2 2\n";
            return console.run({"convert", "-t", "csv", "--meta", field, "-"});
        };
        QCOMPARE(run("Title=Größe <b>"), 0);
        QCOMPARE(console.errors,
                 "zoravel: <stdin>: not kept: Title: Größe <b> becomes \"Größe \"\n");
        QVERIFY(console.output.contains("# Title: \"Größe \"\n"));
        QCOMPARE(run("Title=a<b>c</b>d"), 0);
        QCOMPARE(console.errors, "zoravel: <stdin>: not kept: Title: a<b>c</b>d becomes acd\n");
        QCOMPARE(run("Title=<b>"), 0);
        QCOMPARE(console.errors, "zoravel: <stdin>: not kept: Title: <b>\n");
        QCOMPARE(run("SpectType=17"), 0);
        QCOMPARE(console.errors, "");
        QCOMPARE(run("Title=a<sub>2</sub>"), 0);
        QCOMPARE(console.errors, "");
    }

    void energiesThatAreNoPhotonEnergiesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("heading");
        QTest::addColumn<QByteArray>("what");
        const auto row = [](const char *heading, const char *what) {
            QTest::newRow(heading) << QByteArray(heading) << QByteArray(what);
        };
        for (const char *heading :
             {"KE/eV", "KE", "E_kin / eV", "eKE (eV)", "Kinetic energy / eV", "kinetische Energie",
              "Énergie cinétique (eV)", "Energía cinética / eV", "Photoelectron energy (eV)"})
            row(heading, "kinetic energies");
        for (const char *heading : {"BE/eV", "Binding energy", "eBE [eV]", "E_B / eV", "E_b (meV)",
                                    "Bindungsenergie / eV", "Énergie de liaison (eV)"})
            row(heading, "binding energies");
        row("Ionization energy / eV", "ionisation energies");
        row("IE (eV)", "ionisation energies");
        row("Energy loss / eV", "energies of another kind");
        row("Intensity / arb. unit", "intensities");
        row("Counts", "intensities");
    }
    void energiesThatAreNoPhotonEnergiesAreRefused()
    {
        QFETCH(QByteArray, heading);
        QFETCH(QByteArray, what);
        TestConsole console;
        console.input = "# a comment\n" + heading + ";I\n9.5;1\n9.6;2\n";
        QCOMPARE(console.run({"convert", "-t", "tsv", "-"}), 3);
        QCOMPARE(console.errors, "zoravel: <stdin>:2: \"" + heading + "\" names " + what
                                     + ", not photon energies; if they are meant, say --energy "
                                       "photon\n");
        QCOMPARE(
            console.run({"convert", "-t", "tsv", "--energy", "photon", "--energy-unit", "eV", "-"}),
            0);
        QVERIFY(console.output.endsWith("9.5\t1\n9.6\t2\n"));
    }

    void namedUnitsAreConvertedAndThePointsSortedByEnergy_data()
    {
        QTest::addColumn<QByteArray>("heading");
        QTest::addColumn<QByteArray>("unit");
        const auto rows = [](const char *unit, const QByteArrayList &headings) {
            for (const QByteArray &heading : headings)
                QTest::newRow(heading.constData()) << heading << QByteArray(unit);
        };
        rows("nm", {"nm", "Wavelength / nm", "wavelength (nm)", "λ [nm]", "Wellenlänge in nm",
                    "longueur d'onde (nm)", "Wavelength_nm", "Photon energy (nm)",
                    "Lambda (Nanometers)"});
        rows("A", {"Å", "\u212b", "Wavelength (Å)", "λ/A", "Wavelength / Angstrom"});
        rows("um", {"µm", "Wavelength, μm", "wavelength (microns)"});
        rows("cm-1", {"Energy (cm⁻¹)", "Wavenumber / cm-1", "Wellenzahl (cm^-1)",
                      "wave number (1/cm)", "E / cm−1", "cm<sup>-1</sup>", "Wavenumber (cm^{-1})"});
        rows("meV", {"E / meV", "Photon energy (meV)"});
        rows("keV", {"hv (keV)", "E/KEV"});
        rows("Hartree", {"Energy [Hartree]", "E / E_h"});
        rows("kJ/mol", {"hν / kJ mol⁻¹", "Photon energy kJ/mol", "E / (kJ/mol)", "kJ·mol-1"});
    }
    void namedUnitsAreConvertedAndThePointsSortedByEnergy()
    {
        QFETCH(QByteArray, heading);
        QFETCH(QByteArray, unit);
        // What is 10 eV, from the SI's definition (CODATA 2018), the hartree from CODATA 2022.
        const QHash<QByteArray, QByteArray> tenElectronVolts{
            {"nm", "123.9841984332"},
            {"A", "1239.841984332"},
            {"um", "0.1239841984332"},
            {"cm-1", "80655.43937349"},
            {"meV", "10000"},
            {"keV", "0.01"},
            {"Hartree", "0.367493221757"},
            {"kJ/mol", "964.8533212331"},
        };
        const QByteArray x = tenElectronVolts.value(unit);
        const bool isWavelength = unit == "nm" || unit == "A" || unit == "um";
        const QByteArray other =
            QByteArray::number(x.toDouble() * (isWavelength ? 2 : 0.5), 'g', 15);
        TestConsole console;
        console.input = heading + ";I\n" + x + ";1\n" + other + ";2\n";
        QCOMPARE(console.run({"convert", "-t", "json", "-"}), 0);
        const QByteArray errors = console.errors;
        const QJsonObject read = QJsonDocument::fromJson(console.output).object();
        const QJsonArray energies = read[QLatin1String("E")].toArray();
        QVERIFY2(std::abs(energies[0].toDouble() - 5) < 1e-10, console.output.constData());
        QVERIFY(std::abs(energies[1].toDouble() - 10) < 1e-10);
        QCOMPARE(read[QLatin1String("I")].toArray(), (QJsonArray{2, 1}));
        QVERIFY2(errors.contains(QByteArray("the energies are converted from " + unit
                                            + " to eV, and the points sorted by energy")),
                 errors.constData());
        // The same is said where there is nothing to name it.
        console.input = x + ' ' + "1\n" + other + " 2\n";
        QCOMPARE(console.run({"convert", "-t", "json", "--energy-unit", unit, "-"}), 0);
        QCOMPARE(QJsonDocument::fromJson(console.output).object()[QLatin1String("E")].toArray(),
                 energies);
    }

    void unitsThatCannotBeConvertedAreRefused_data()
    {
        QTest::addColumn<QByteArray>("heading");
        for (const char *heading : {"J",
                                    "E / J",
                                    "Energy (J)",
                                    "Energy J",
                                    "Wavenumber",
                                    "Wavelength",
                                    "λ",
                                    "Wellenzahl",
                                    "Frequency / THz",
                                    "THz",
                                    "E / kcal/mol",
                                    "Energy (MeV)",
                                    "E / MEV",
                                    "Time / s",
                                    "Time",
                                    "m/z",
                                    "Raman shift / cm-1",
                                    "E / a.u.",
                                    "Wavelength / eV",
                                    "Wavelength in air / nm",
                                    "E / eV (λ / nm)",
                                    "Energy (calibrated)",
                                    "T (K)",
                                    "E/m-1",
                                    "Energy (1/nm)",
                                    "Energy kJ",
                                    "E / nm-1",
                                    "Energy in 1/µm"})
            QTest::newRow(heading) << QByteArray(heading);
    }
    void unitsThatCannotBeConvertedAreRefused()
    {
        QFETCH(QByteArray, heading);
        TestConsole console;
        console.input = heading + ";I\n9.5;1\n9.6;2\n";
        QCOMPARE(console.run({"convert", "-t", "tsv", "-"}), 3);
        QVERIFY2(console.errors.startsWith("zoravel: <stdin>:1: \""), console.errors.constData());
        QVERIFY(console.errors.contains("--energy"));
        QCOMPARE(console.output, "");
        QCOMPARE(
            console.run({"convert", "-t", "tsv", "--energy", "photon", "--energy-unit", "eV", "-"}),
            0);
        QVERIFY(console.output.endsWith("9.5\t1\n9.6\t2\n"));
    }

    void photonEnergiesInElectronVoltsAreReadAsTheyAre_data()
    {
        QTest::addColumn<QByteArray>("heading");
        for (const char *heading :
             {"E / eV", "hv (eV)", "hν/eV", "Photon energy [eV]", "Energy", "x", "E", "hv", "eV",
              "Photonenergie / eV", "Énergie des photons (eV)", "photon_energy_eV", "Energy, eV",
              "Energía del fotón (eV)", "Энергия фотона (эВ)", "光子能量 (eV)", "Photon Energy/EV",
              "Energie in eV", "energy:eV"})
            QTest::newRow(heading) << QByteArray(heading);
    }
    void photonEnergiesInElectronVoltsAreReadAsTheyAre()
    {
        QFETCH(QByteArray, heading);
        TestConsole console;
        console.input = heading + ";I\n9.6;1\n9.5;2\n";
        QCOMPARE(console.run({"convert", "-t", "tsv", "-"}), 0);
        QVERIFY(console.output.endsWith("9.6\t1\n9.5\t2\n"));
        QVERIFY2(!console.errors.contains("convert"), console.errors.constData());
    }

    void linesBesideTheHeadingsTellTheUnit_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("outcome"); // the first energy, or what is refused
        const auto row = [](const char *bytes, const char *outcome) {
            QTest::newRow(bytes) << QByteArray(bytes) << QByteArray(outcome);
        };
        row("# wavelength (nm) intensity\n100 1\n200 2\n", "6.19920992166");
        row("# wavelength (nm),intensity\n100,1\n200,2\n", "6.19920992166");
        row("wavelength (nm) counts\n100 1\n200 2\n", "6.19920992166");
        row("Photon energy\tIntensity\nnm\tcounts\n100\t1\n200\t2\n", "6.19920992166");
        row("Photon energy;Intensity\nmeV;arb. u.\nrun A;run A\n9500;1\n9600;2\n", "9.5");
        row("# energy (eV) intensity (counts)\n100 1\n", "100");
        row("# resolution 5 meV, T 300 K\n100 1\n", "100");
        row("# FurtherComments: kinetic energies, nm\n100 1\n", "100");
        row("# made from the wavelength in nm\nE / eV,I\n100,1\n", "100");
        row("# units: nm\n100 1\n", ":1: ");
        row("# x in nm\nx,y\n100,1\n", ":1: ");
        row("# binding energies\n# 1 January\n100 1\n", ":1: ");
        row("# Binding energy\tcounts\n100\t1\n", ":1: ");
        row("E / eV;I\nnm;counts\n100;1\n", ":2: ");
    }
    void linesBesideTheHeadingsTellTheUnit()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, outcome);
        TestConsole console;
        console.input = bytes;
        const bool isRefused = outcome.startsWith(':');
        QCOMPARE(console.run({"convert", "-t", "json", "-"}), isRefused ? 3 : 0);
        if (isRefused) {
            QVERIFY2(console.errors.startsWith(QByteArray("zoravel: <stdin>" + outcome)),
                     console.errors.constData());
            return;
        }
        const QJsonObject read = QJsonDocument::fromJson(console.output).object();
        QCOMPARE(read[QLatin1String("E")].toArray().first().toDouble(), outcome.toDouble());
    }

    void aWavelengthOfNothingIsRefusedWithItsLine()
    {
        TestConsole console;
        console.input = "nm,I\n100,1\n0,2\n";
        QCOMPARE(console.run({"convert", "-t", "tsv", "-"}), 3);
        QCOMPARE(console.errors, "zoravel: <stdin>:3: a wavelength of 0 has no energy\n");
    }

    void jcampUnitsAreReadByTheSameRules_data()
    {
        QTest::addColumn<QByteArray>("label");
        QTest::addColumn<QByteArrayList>("options");
        QTest::addColumn<QByteArray>("outcome"); // the first energy, or what is refused
        const auto row = [](const char *label, const QByteArrayList &options, const char *outcome) {
            QTest::newRow(QByteArray(label + (' ' + options.join(' '))).constData())
                << QByteArray(label) << options << QByteArray(outcome);
        };
        row("##XUNITS= Wavelength (nm)\n", {}, "6.19920992166");
        row("##XUNITS= NANOMETERS\n", {}, "6.19920992166");
        row("##XUNITS= ANGSTROMS\n", {}, "61.9920992166");
        row("##XUNITS= 1/CM\n", {}, "0.0123984198433");
        row("##XUNITS= EV\n", {}, "100");
        row("", {}, ":4: XUNITS is missing; say the unit by --energy-unit");
        row("", {"--energy-unit", "nm"}, "6.19920992166");
        row("", {"--energy-unit", "eV"}, "100");
        row("##XUNITS= BINDING ENERGY / EV\n", {},
            ":3: \"BINDING ENERGY / EV\" names binding energies");
        row("##XUNITS= EV\n##XLABEL= Kinetic energy\n", {},
            ":3: \"Kinetic energy EV\" names kinetic energies");
        row("##XUNITS= EV\n##XLABEL= Kinetic energy\n", {"--energy", "photon"}, "100");
        row("##XUNITS= SECONDS\n", {}, ":3: \"SECONDS\"");
        row("##XUNITS= MEV\n", {}, ":3: \"MEV\"");
    }
    void jcampUnitsAreReadByTheSameRules()
    {
        QFETCH(QByteArray, label);
        QFETCH(QByteArrayList, options);
        QFETCH(QByteArray, outcome);
        TestConsole console;
        console.input = "##TITLE= t\n##JCAMP-DX= 5.01\n" + label
                        + "##YUNITS= COUNTS\n##XYPOINTS= (XY..XY)\n100, 1\n200, 2\n##END=\n";
        const bool isRefused = outcome.startsWith(':');
        QCOMPARE(console.run(QByteArrayList{"convert", "-t", "json", "-"} + options),
                 isRefused ? 3 : 0);
        if (isRefused) {
            QVERIFY2(console.errors.startsWith(QByteArray("zoravel: <stdin>" + outcome)),
                     console.errors.constData());
            return;
        }
        const QJsonObject read = QJsonDocument::fromJson(console.output).object();
        QJsonArray energies = read[QLatin1String("E")].toArray();
        QVERIFY(energies[0].toDouble() < energies[1].toDouble());
        QVERIFY2(energies.contains(outcome.toDouble()), console.output.constData());
    }

    void aControlZBehindTheEndIsNothing()
    {
        TestConsole console;
        console.input = "##TITLE= t\n##XUNITS= EV\n##XYPOINTS= (XY..XY)\n9, 1\n##END=\r\n\x1a\r\n";
        QCOMPARE(console.run({"convert", "-t", "tsv", "-"}), 0);
        QVERIFY(console.output.endsWith("9\t1\n"));
        console.input = "9 1\r\n10 2\r\n\x1a";
        QCOMPARE(console.run({"convert", "-t", "tsv", "-"}), 0);
        QVERIFY(console.output.endsWith("9\t1\n10\t2\n"));
    }

    void wrongCheckValuesAreTakenOnRequestAndSaid()
    {
        const QByteArray bytes = "##TITLE= t\n##XUNITS= EV\n##FIRSTX= 10\n##LASTX= 13\n"
                                 "##NPOINTS= 4\n##XYDATA= (X++(Y..Y))\n10 1 2J\n12 5 4\n##END=\n";
        TestConsole console;
        console.input = bytes;
        QCOMPARE(console.run({"convert", "-t", "tsv", "-"}), 3);
        QCOMPARE(console.errors,
                 "zoravel: <stdin>:8: the check value is 5 where 3 is due; --lenient "
                 "takes the file nevertheless\n");
        QCOMPARE(console.run({"convert", "-t", "tsv", "--lenient", "-"}), 0);
        QVERIFY(console.output.endsWith("10\t1\n11\t2\n12\t3\n13\t4\n"));
        QVERIFY2(
            console.errors.contains("zoravel: <stdin>: line 8: the check value is 5 where 3 is "
                                    "due; 3 is taken\n"),
            console.errors.constData());
    }

    void aPointAboveTheFirstReadableOneIsRefusedWithItsLine_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("line");
        const auto row = [](const char *bytes, int line) {
            QTest::newRow(bytes) << QByteArray(bytes) << line;
        };
        row("nan 5\n9.5 100\n", 1);
        row("E,I\n1e400,5\n9.5,100\n", 2);
        row("9.5;nan\n9.6;1\n", 1);
        row("9.4;inf\n9.5;nan\n9.6;1\n", 1);
        row("9.5 100 # first\n9.6 200\n", 1);
        row("9.4eV 100\n9.5 200\n", 1);
        row("9.4 100*\n9.5 200\n", 1);
        row("9.4\t-\n9.5\t200\n", 1);
        row("#N/A;100\n9.5;200\n", 1);
        row("9,4 100\n9.5 200\n", 2); // not all with the same decimal sign
        row("scan 3 of 10\n9.5 200\n", 1);
        row("80\u202f655;5\n80\u202f700;6\n", 1);
    }
    void aPointAboveTheFirstReadableOneIsRefusedWithItsLine()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, line);
        TestConsole console;
        console.input = bytes;
        QCOMPARE(console.run({"convert", "-t", "tsv", "-"}), 3);
        QVERIFY2(console.errors.startsWith(
                     QByteArray("zoravel: <stdin>:" + QByteArray::number(line) + ": ")),
                 console.errors.constData());
    }

    void textCommentsAndHeadingsMayStandAboveThePoints_data()
    {
        QTest::addColumn<QByteArray>("above");
        for (const char *above :
             {"", "Benzene\n", "Temperature 300 K\n", "2024-03-01 12:30:05\n", "Date: 1.3.2024\n",
              "E;I\n", "# 9.4 99\n", "run 12\n# 1 2 3\nE / eV;I\n", "C6H6 + H2O\n"})
            QTest::newRow(above) << QByteArray(above);
    }
    void textCommentsAndHeadingsMayStandAboveThePoints()
    {
        QFETCH(QByteArray, above);
        TestConsole console;
        console.input = above + "9.5;100\n9.6;200\n";
        QVERIFY2(console.run({"convert", "-t", "tsv", "-"}) == 0, console.errors.constData());
        QVERIFY(console.output.endsWith("9.5\t100\n9.6\t200\n"));
    }

    void aUnicodeMinusIsAMinus()
    {
        TestConsole console;
        console.input = "−1.5;2\n9.5;−0.25\n9.6;1e−3\n";
        QCOMPARE(console.run({"convert", "-t", "tsv", "-"}), 0);
        QVERIFY2(console.output.endsWith("-1.5\t2\n9.5\t-0.25\n9.6\t0.001\n"),
                 console.output.constData());
        // Nor does it show that a comma is a decimal one.
        console.input = "−1,234\t5,678\n";
        QCOMPARE(console.run({"convert", "-t", "tsv", "-"}), 3);
    }

    void spacesOfUnicodeAroundNumbersAreNothing()
    {
        TestConsole console;
        console.input = "9.5\u00a0;\u2009100\n9.6;\u202f200\n";
        QCOMPARE(console.run({"convert", "-t", "tsv", "-"}), 0);
        QVERIFY(console.output.endsWith("9.5\t100\n9.6\t200\n"));
    }

    void withoutAFormatTheReasonIsSaid()
    {
        writeFile(QStringLiteral("in.csv"), "9.1,1\n9.2,2\n");
        TestConsole console;
        for (const QByteArrayList &words :
             QList<QByteArrayList>{{"gone"}, {"-o", "scan.xyz", "gone"}, {"-o", "scan", "gone"}}) {
            QCOMPARE(console.run(QByteArrayList{"convert"} + words), 3);
            QCOMPARE(console.errors, "zoravel: gone: no such file\n");
        }
        const auto refusal = [&](const QByteArray &output) {
            const int status = console.run({"convert", "-o", output, "in.csv"});
            return status == 2 ? console.errors.left(console.errors.indexOf('\n')) : QByteArray();
        };
        const QByteArray start = "zoravel convert: ";
        QCOMPARE(refusal("scan.xyz"),
                 start + "the ending .xyz tells no format, and --to FORMAT is missing");
        QCOMPARE(refusal("a.b/scan"),
                 start
                     + "a.b/scan has no ending that tells the format, and --to FORMAT is missing");
        QCOMPARE(refusal("scan."),
                 start + "scan. has no ending that tells the format, and --to FORMAT is missing");
        QCOMPARE(
            refusal("a.csv/scan"),
            start + "a.csv/scan has no ending that tells the format, and --to FORMAT is missing");
        QCOMPARE(refusal("-"), start + "--to FORMAT is missing");
    }

    void aHyphenIsStandardOutputToo()
    {
        TestConsole console;
        console.input = "9.1 1\n9.2 2\n";
        QCOMPARE(console.run({"convert", "-t", "tsv", "-o", "-", "-"}), 0);
        QVERIFY(console.output.endsWith("9.1\t1\n9.2\t2\n"));
        QVERIFY(QDir().isEmpty());
    }

    void aByteOrderMarkIsPassedOver()
    {
        TestConsole console;
        console.input = "\xef\xbb\xbf{\"Type\": \"Spectrum v1\", \"E\": [9.1], \"I\": [1]}";
        QCOMPARE(console.run({"convert", "-t", "tsv", "-"}), 0);
        QVERIFY(console.output.endsWith("9.1\t1\n"));
    }

    void badInputIsRefusedWithItsPlace_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("error");
        const auto row = [](const QByteArray &bytes, const char *error) {
            QTest::newRow(error) << bytes << QByteArray(error);
        };
        row("1,2\nx\n", ":2: 1 column, but 2 above");
        row("##TITLE=\n##END=\n", ":1: there are no XYDATA or XYPOINTS");
        row("{\"Type\":\n 1,}", ":2: no JSON: ");
        row("{}", ": neither a species nor a spectrum file");
        row(R"({"Type": "Species v1"})", ": there is no spectrum");
        row(R"({"Type": "Species v1", "Dataset1": {}, "Dataset2": {}})",
            ": there are 2 spectra: say which one by --spectrum");
        row(R"({"Type": "Spectrum v1", "E": [1, 2], "I": [1]})",
            ": the points are not sound: 2 energies and 1 intensities");
        row(R"({"Type": "Spectrum v1", "E": ["1"], "I": [1]})",
            ": the points are not sound: 1 values that are no numbers");
    }
    void badInputIsRefusedWithItsPlace()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, error);
        writeFile(QStringLiteral("in"), bytes);
        writeFile(QStringLiteral("out.csv"), "old");
        TestConsole console;
        QCOMPARE(console.run({"convert", "-o", "out.csv", "in"}), 3);
        QVERIFY2(console.errors.startsWith(QByteArray("zoravel: in" + error)),
                 console.errors.constData());
        QCOMPARE(console.errors.count('\n'), 1);
        QCOMPARE(fileBytes(QStringLiteral("out.csv")), "old");
    }

    void wrongUsageIsRefused_data()
    {
        QTest::addColumn<QByteArrayList>("words");
        QTest::addColumn<QByteArray>("error");
        const auto row = [](const QByteArrayList &words, const char *error) {
            QTest::newRow(error) << words << QByteArray(error);
        };
        row({"water.json"}, "--to FORMAT is missing");
        row({"-t", "jcmp", "x"}, "the format jcmp is none of csv, tsv, jcamp, json; did you mean "
                                 "jcamp?");
        row({"-t", "csv", "x", "y"}, "one file has to be named");
        row({"-t", "csv", "-s", "all", "x"}, "--spectrum all is not a number");
        row({"-t", "csv", "--decimal", ",", "x"}, "the decimal sign is point or comma, not ,");
        row({"-t", "csv", "--columns", "1", "x"}, "--columns needs two columns, as 1,2");
        row({"-t", "csv", "--energy-unit", "furlong", "x"},
            "the unit furlong is none of eV, meV, keV, nm, A, um, cm-1, Hartree, kJ/mol");
        row({"-t", "csv", "--energy", "kinetic", "x"}, "--energy takes photon, not kinetic");
        row({"-t", "csv", "--meta", "x", "x"}, "--meta x is not of the form KEY=VALUE");
        row({"-t", "csv", "--meta", "titel=x", "x"},
            "a spectrum has no field titel; did you mean Title?");
        row({"-t", "csv", "--meta", "SpectType=XPS", "x"}, "XPS is no value of SpectType");
        row({"-o", "water.json", "x"}, "water.json is a species file, which is not overwritten");
        row({"-t", "csv", "-o", "water.json", "water.json"}, "OUT is FILE itself");
    }
    void wrongUsageIsRefused()
    {
        QFETCH(QByteArrayList, words);
        QFETCH(QByteArray, error);
        QVERIFY(QFile::copy(QStringLiteral(ZORAVEL_EXAMPLES "/water.json"),
                            QStringLiteral("water.json")));
        const QByteArray before = fileBytes(QStringLiteral("water.json"));
        TestConsole console;
        QCOMPARE(console.run(QByteArrayList{"convert"} + words), 2);
        QCOMPARE(console.errors,
                 "zoravel convert: " + error + "\nSee \"zoravel convert --help\".\n");
        QCOMPARE(fileBytes(QStringLiteral("water.json")), before);
    }

    void blanksCountInTablesAndNotBetweenTheValuesOfJson()
    {
        const QByteArray blanks(largestJsonFile, ' ');
        writeFile(QStringLiteral("wide.json"),
                  R"({"Type": "Spectrum v1", "E": [1], "I": [)" + blanks + "2]}");
        writeFile(QStringLiteral("wide.csv"), "1,2\n");
        QVERIFY(QFile::resize(QStringLiteral("wide.csv"), largestJsonFile + 1));
        TestConsole console;
        QCOMPARE(console.run({"convert", "-t", "csv", "wide.json"}), 0);
        QVERIFY(console.output.endsWith("\n1,2\n"));
        QCOMPARE(console.run({"convert", "-t", "json", "wide.csv"}), 3);
        QCOMPARE(console.errors, "zoravel: wide.csv: too large\n");
    }

    // Control characters take six bytes each in a file.
    void whatWouldBeTooLargeToBeReadIsNotWritten()
    {
        writeFile(QStringLiteral("points.csv"), "1,2\n");
        writeFile(QStringLiteral("old.json"), "old");
        const QByteArray title = "Title=" + QByteArray(largestJsonFile / 6, '\x01');
        TestConsole console;
        QCOMPARE(console.run({"convert", "-o", "old.json", "--meta", title, "points.csv"}), 3);
        QCOMPARE(console.errors,
                 "zoravel: old.json: not written: it would be too large to be read\n");
        QCOMPARE(fileBytes(QStringLiteral("old.json")), "old");
    }

    void standardInputThatIsClosedIsSaid()
    {
        TestConsole console;
        QCOMPARE(console.run({"convert", "-t", "csv", "-"}), 3);
        QCOMPARE(console.errors, "zoravel: standard input cannot be read\n");
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(TestCliConvert)
#include "tst_cli_convert.moc"
