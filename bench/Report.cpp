// Computes figures from the measurements of one run, mostly ratios to a plain reference of the same run.
// Usage: bench_report [-quick] figures.json PROGRAM.json... Prints one line for each figure of these
// programs: name, value, bound, "ok" or "short". With -quick, the lines also end in "quick". Exit status 0 if
// all figures meet their bounds.
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QTextStream>

#include <cmath>

namespace {

QTextStream& Out() {
    static QTextStream stream(stdout);
    return stream;
}

QTextStream& Err() {
    static QTextStream stream(stderr);
    return stream;
}

QJsonObject ReadObject(const QString& path, bool& ok) {
    QFile file(path);
    QJsonParseError error{};
    QJsonDocument document;
    if (file.open(QIODevice::ReadOnly)) {
        // The variation of a counter that is always zero is written as NaN, which is not JSON.
        document = QJsonDocument::fromJson(file.readAll().replace(": NaN", ": null"), &error);
    }
    ok = document.isObject();
    if (!ok) {
        Err() << path << ": " << (file.error() ? file.errorString() : error.errorString()) << "\n";
    }
    return document.object();
}

double Nanoseconds(const QJsonObject& run) {
    static const QHash<QString, double> factors{{"ns", 1.0}, {"us", 1e3}, {"ms", 1e6}, {"s", 1e9}};
    return run["real_time"].toDouble() * factors.value(run["time_unit"].toString(), 1.0);
}

/// Benchmark name -> the median of its repetitions, or its only run.
using Measurements = QHash<QString, QJsonObject>;

bool Collect(const QString& path, Measurements& measurements) {
    bool ok = false;
    const QJsonObject results = ReadObject(path, ok);
    const QJsonArray runs = results["benchmarks"].toArray();
    for (const auto& value : runs) {
        const QJsonObject run = value.toObject();
        const QString name = run["run_name"].toString();
        if (run["run_type"].toString() == "aggregate" ? run["aggregate_name"].toString() == "median"
                                                      : !measurements.contains(name)) {
            measurements.insert(name, run);
        }
    }
    return ok;
}

/// Returns the value of a figure: a "time" (nanoseconds, times "scale" for another unit), a "ratio" (time of
/// the first benchmark over that of the second, times "scale" if their amounts of work differ) or a
/// "counter".
double Evaluate(const QJsonObject& figure, const Measurements& measurements) {
    const auto time = [&](const QJsonValue& name) {
        const auto found = measurements.constFind(name.toString());
        return found == measurements.constEnd() ? std::nan("") : Nanoseconds(*found);
    };
    if (figure.contains("ratio")) {
        const QJsonArray pair = figure["ratio"].toArray();
        return time(pair.at(0)) / time(pair.at(1)) * figure["scale"].toDouble(1.0);
    }
    if (figure.contains("counter")) {
        const QJsonArray pair = figure["counter"].toArray();
        const QJsonObject run = measurements.value(pair.at(0).toString());
        return run.contains(pair.at(1).toString()) ? run[pair.at(1).toString()].toDouble() : std::nan("");
    }
    return time(figure["time"]) * figure["scale"].toDouble(1.0);
}

bool Print(const QJsonObject& figure, const Measurements& measurements, bool isQuick) {
    const double value = Evaluate(figure, measurements);
    const QString unit = figure["unit"].toString();
    QString bound = "-";
    bool met = !std::isnan(value);
    if (figure.contains("at_least")) {
        bound = ">= " + QString::number(figure["at_least"].toDouble());
        met = met && value >= figure["at_least"].toDouble();
    } else if (figure.contains("at_most")) {
        bound = "<= " + QString::number(figure["at_most"].toDouble());
        met = met && value <= figure["at_most"].toDouble();
    }
    const QString number =
        std::isnan(value) ? QStringLiteral("not measured") : QString::number(value, 'g', 4) + unit;
    Out() << figure["name"].toString().leftJustified(62) << number.rightJustified(14)
          << bound.rightJustified(12) << (met ? "  ok" : "  short") << (isQuick ? ", quick" : "") << "\n";
    return met;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QStringList arguments = application.arguments().mid(1);
    const bool isQuick = arguments.removeAll("-quick") > 0;
    if (arguments.size() < 2) {
        Err() << "usage: bench_report [-quick] figures.json PROGRAM.json...\n";
        return 2;
    }
    bool ok = false;
    const QJsonObject figures = ReadObject(arguments.takeFirst(), ok);
    for (const QString& path : arguments) {
        Measurements measurements;
        ok = Collect(path, measurements) && ok;
        const QJsonArray wanted = figures[QFileInfo(path).baseName()].toArray();
        for (const auto& figure : wanted) {
            ok = Print(figure.toObject(), measurements, isQuick) && ok;
        }
    }
    return ok ? 0 : 1;
}
