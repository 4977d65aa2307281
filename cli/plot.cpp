// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/command.h"
#include "cli/console.h"
#include "cli/filenames.h"
#include "cli/pickspectrum.h"
#include "cli/plotfile.h"
#include "cli/readfile.h"
#include "cli/writefile.h"
#include "exchange/numbers.h"
#include "files/filebytes.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/points.h"
#include "spectrum/spectrumobject.h"

#include <algorithm>
#include <array>
#include <optional>
#include <variant>

namespace
{

constexpr std::array options{
    Option{"output", 'o', "OUT", "the picture, by its ending png, svg or pdf; has to be given"},
    Option{"spectrum", 's', "N|all", "the spectrum of a file of several: DatasetN of a species"},
    Option{"size", 0, "WxH", "its size in pixels of 96 to the inch, 800x500 if not given"},
    Option{"dpi", 0, "N", "the pixels of a png to the inch, 96 if not given"},
    Option{"range", 0, "A:B", "the photon energies to show, in eV"},
    Option{"title", 0, "TEXT", "a title above the chart; %t is that of the spectrum"},
};

constexpr char details[] =
    R"(Draws the chart that the editor shows of a spectrum: a curve, or the sticks of a
line spectrum. Where there are several pictures, OUT contains %n, which stands for
the number of the picture: p%n.png gives p1.png, p2.png and so on, in the order of
the files and, in a file, of the editor. %% stands for a percent sign. A folder
stands for all its files *.json and those of its subfolders. No display is needed.
Around what is drawn there is 5 % of room; --range gives the energies exactly.

Examples:
  zoravel plot -o benzene.png --spectrum 1 benzene.json
  zoravel plot -o p%n.svg --spectrum all --title "%t" species/
)";

struct Job {
    QByteArray output; // with "%n"
    PlotFormat format;
    QByteArray spectrum;
    QByteArray range; // as it was given
    QByteArray title; // with "%t"
};

// The name of the picture with this number; nothing if the pattern has no place for it.
std::optional<QByteArray> pictureName(const QByteArray &pattern, qsizetype number)
{
    QByteArray name;
    bool hasNumber = false;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const char next = i + 1 < pattern.size() ? pattern[i + 1] : '\0';
        if (pattern[i] == '%' && next == 'n') {
            name += QByteArray::number(number);
            hasNumber = true;
            ++i;
        } else {
            name += pattern[i];
            i += pattern[i] == '%' && next == '%' ? 1 : 0;
        }
    }
    return hasNumber || number == 1 ? std::optional(name) : std::nullopt;
}

// The picture's title as restricted markup; %t is the spectrum's own.
QString pictureTitle(const QByteArray &pattern, const QString &spectrumTitle)
{
    constexpr qsizetype most = 1000; // characters; far fewer fit
    const QStringList parts = QString::fromUtf8(pattern).split(QStringLiteral("%%"));
    QStringList titles;
    for (QString part : parts)
        titles.append(part.replace(QStringLiteral("%t"), spectrumTitle.left(most)));
    return cleanHtmlContent(titles.join(u'%'));
}

// Whether a chart of the points shows something in the range. A curve does if it has points on both
// sides.
bool isAnythingIn(const EnergyRange &range, const QList<QPointF> &points, bool isLineSpectrum)
{
    bool below = false;
    bool above = false;
    for (const QPointF &point : points) {
        if (point.x() >= range.fromEv && point.x() <= range.toEv)
            return true;
        below = below || point.x() < range.fromEv;
        above = above || point.x() > range.toEv;
    }
    return below && above && !isLineSpectrum;
}

QByteArray shownEnergy(double ev)
{
    constexpr int digits = 6; // of a point in the editor
    return QByteArray::number(ev, 'g', digits);
}

// Draws the spectra of the files one by one.
class Plotter
{
public:
    Plotter(const Job &job, Console &console) : m_job(job), m_console(console) {}

    void addFile(const InputFile &input)
    {
        const std::optional<QJsonObject> object = readObject(input, m_console);
        if (!object) {
            fail();
            return;
        }
        if (isPassedOver(input, *object, PassOver::Databases))
            return;
        const auto picked = pickSpectra(*object, m_job.spectrum);
        if (const auto *reason = std::get_if<QByteArray>(&picked)) {
            fail(input, *reason);
            return;
        }
        const auto &spectra = std::get<QList<NumberedSpectrum>>(picked);
        if (spectra.size() > 1 && !pictureName(m_job.output, 2)) {
            fail(input, "OUT needs a %n for more than one picture");
            return;
        }
        for (const NumberedSpectrum &spectrum : spectra)
            addSpectrum(input, spectrum);
    }

    [[nodiscard]] int status() const { return m_status; }

private:
    void addSpectrum(const InputFile &input, const NumberedSpectrum &spectrum)
    {
        const QByteArray place = "spectrum " + QByteArray::number(spectrum.number) + ": ";
        ++m_count;
        // The editor's chart shows six digits of each number too.
        const SpectrumRecord record = SpectrumRecord::fromJson(spectrum.object);
        const QList<QPointF> points = parsePoints(record.pointLines);
        const std::optional<PointRange> extent = finiteRange(points);
        if (!extent) {
            fail(input, place + "there is nothing to draw");
            return;
        }
        const bool isLine = record.isLineSpectrum;
        if (m_job.format.range && !isAnythingIn(*m_job.format.range, points, isLine)) {
            fail(input, place + "no point lies in the range " + m_job.range
                            + "; the points are from " + shownEnergy(extent->minX) + " to "
                            + shownEnergy(extent->maxX) + " eV");
            return;
        }
        PlotFormat format = m_job.format;
        format.title = pictureTitle(m_job.title, record.text(SpectrumColumn::Title));
        const QByteArray picture = pictureOf(points, isLine, format);
        if (picture.isEmpty()) {
            fail(input, place + "the picture cannot be made, it is too large");
            return;
        }
        const std::optional<QByteArray> name = pictureName(m_job.output, m_count);
        if (!name || !writeFile(*name, picture, m_console))
            fail();
    }

    void fail() { m_status = exitFailure; }

    void fail(const InputFile &input, const QByteArray &why)
    {
        m_console.error(shownName(input.name) + ": " + why);
        fail();
    }

    const Job &m_job;
    Console &m_console;
    qsizetype m_count = 0;
    int m_status = exitFine;
};

// Reads "A:B" as two numbers, A below B; or says what is wrong.
std::variant<EnergyRange, UsageError> rangeIn(const QByteArray &text)
{
    const QByteArrayList ends = text.split(':');
    const std::optional<double> from = numberIn(ends.first());
    const std::optional<double> to = numberIn(ends.last());
    if (ends.size() != 2 || !from || !to)
        return UsageError{"--range needs two energies in eV, as 9.2:10.5", {}};
    if (*from > *to)
        return UsageError{
            "--range " + text + " is in the wrong order: the lower energy comes first", {}};
    if (*from == *to)
        return UsageError{"--range " + text + " has the same energy twice", {}};
    return EnergyRange{*from, *to};
}

// Reads "WxH", each from 50 to 20,000.
std::optional<QSize> sizeIn(const QByteArray &text)
{
    constexpr int least = 50;
    constexpr int most = 20'000;
    const QByteArrayList sides = text.split('x');
    if (sides.size() != 2)
        return std::nullopt;
    const QSize size(sides[0].toInt(), sides[1].toInt());
    const auto fits = [](int side) { return side >= least && side <= most; };
    return fits(size.width()) && fits(size.height()) ? std::optional(size) : std::nullopt;
}

std::variant<Job, UsageError> jobOf(const Arguments &arguments)
{
    Job job{
        arguments.value("output"), {}, arguments.value("spectrum"), {}, arguments.value("title")};
    if (job.output.isEmpty())
        return UsageError{"-o OUT is missing", {}};
    const QByteArray ending = job.output.sliced(job.output.lastIndexOf('.') + 1).toLower();
    const QByteArrayList endings{"png", "svg", "pdf"};
    if (!endings.contains(ending))
        return UsageError{"OUT has to end in .png, .svg or .pdf", closestTo(ending, endings)};
    job.format.kind = PlotFormat::Kind(endings.indexOf(ending));
    if (!isSpectrumChoice(job.spectrum, true))
        return UsageError{"--spectrum " + job.spectrum + " is neither a number nor all", {}};
    if (arguments.has("size")) {
        const std::optional<QSize> size = sizeIn(arguments.value("size"));
        if (!size)
            return UsageError{"--size needs two numbers from 50 to 20000, as 800x500", {}};
        job.format.size = *size;
    }
    if (arguments.has("dpi")) {
        constexpr int mostDpi = 2400;
        job.format.dpi = arguments.value("dpi").toInt();
        if (job.format.dpi < 10 || job.format.dpi > mostDpi)
            return UsageError{"--dpi needs a number from 10 to 2400", {}};
    }
    if (!isDrawable(job.format))
        return UsageError{"a picture of that size and --dpi is too large", {}};
    if (arguments.has("range")) {
        job.range = arguments.value("range");
        const auto range = rangeIn(job.range);
        if (const auto *error = std::get_if<UsageError>(&range))
            return *error;
        job.format.range = std::get<EnergyRange>(range);
    }
    return job;
}

int run(const Arguments &arguments, Console &console)
{
    const auto read = jobOf(arguments);
    if (const auto *error = std::get_if<UsageError>(&read))
        return usageError(console, plotCommand(), *error);
    const auto &job = std::get<Job>(read);
    if (arguments.operands().isEmpty())
        return usageError(console, plotCommand(), {"no file is named", {}});
    const InputList list = listInputs(arguments.operands());
    if (list.files.size() > 1 && !pictureName(job.output, 2))
        return usageError(console, plotCommand(), {"several files need a %n in OUT", {}});

    Plotter plotter(job, console);
    {
        Progress progress(console, "Drawing", list.files.size());
        for (qsizetype i = 0; i < list.files.size(); ++i) {
            progress.advance(i);
            plotter.addFile(list.files[i]);
        }
    }
    return nameBadFolders(list, console) ? exitFailure : plotter.status();
}

} // namespace

const Command &plotCommand()
{
    static constexpr Command command{
        "plot", "FILE...", "Draw the charts of spectra", details, options, run, true};
    return command;
}
