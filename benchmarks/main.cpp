#include <benchmark/benchmark.h>

#include <QApplication>

int main(int argc, char **argv)
{
    // No display is needed: what is painted goes to an image.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
