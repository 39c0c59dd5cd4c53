// What filters and effects cost on a large picture, beside the same done pixel by pixel, beside a plain copy
// and beside what OpenCV does on one thread.

#include "Comparison.h"

#include "paint/mdlEffect.h"
#include "paint/SlowFilters.h"

#ifdef SHOTLY_OPENCV
#include <opencv2/imgproc.hpp>
#endif

#include <cstdio>
#include <random>

using mdlEffect::Kind;
using mdlEffect::TransformPicture;

namespace
{
/// Half of it like a photograph: slopes with noise; the rest flat areas.
QImage makePicture()
{
    QImage picture(3840, 2160, QImage::Format_RGB32);
    std::mt19937 noise(1);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const bool isFlat = (x / 480 + y / 270) % 2 == 0;
            const int grain = isFlat ? 0 : static_cast<int>(noise() % 32);
            picture.setPixel(x, y,
                             isFlat ? qRgb(x / 480 * 30, y / 270 * 30, 200)
                                    : qRgb(x * 224 / 3840 + grain, y * 224 / 2160 + grain, 224 - grain));
        }
    return picture;
}

const QImage &picture()
{
    static const QImage made = makePicture();
    return made;
}

QRgb pixelAt(double x, double y)
{
    const QPoint place(static_cast<int>(std::floor(x)), static_cast<int>(std::floor(y)));
    return picture().valid(place) ? picture().pixelColor(place).rgb() : 0xffffffffU;
}

/// Every pixel of a new picture from a place in the old one.
template <typename From>
QImage pixelByPixel(QSize size, From from)
{
    QImage result(size, QImage::Format_RGB32);
    for (int x = 0; x < size.width(); ++x)
        for (int y = 0; y < size.height(); ++y)
            result.setPixel(x, y, from(x, y));
    return result;
}

QRgb average(QRectF part)
{
    std::array<double, 3> sums{};
    for (int x = static_cast<int>(part.left()); x < part.right(); ++x)
        for (int y = static_cast<int>(part.top()); y < part.bottom(); ++y) {
            const QRectF shared = part & QRectF(x, y, 1, 1);
            const double share = shared.width() * shared.height() / part.width() / part.height();
            const QColor colour = picture().pixelColor(x, y);
            sums[0] += share * colour.red();
            sums[1] += share * colour.green();
            sums[2] += share * colour.blue();
        }
    return qRgb(qRound(sums[0]), qRound(sums[1]), qRound(sums[2]));
}

QImage resizeSlowly(double factor)
{
    const double side = 1 / factor;
    return pixelByPixel(picture().size() * factor, [&](int x, int y) {
        return average({x * side, y * side, side, side});
    });
}

QImage rotateSlowly(double degrees)
{
    const double w = picture().width();
    const double h = picture().height();
    const double angle = degrees * M_PI / 180;
    const bool isQuarter = degrees == 90 || degrees == 270;
    const QSize size = isQuarter ? picture().size().transposed() : picture().size();
    return pixelByPixel(size, [&](int x, int y) {
        const double dx = x + 0.5 - size.width() / 2.0;
        const double dy = y + 0.5 - size.height() / 2.0;
        return pixelAt(std::cos(angle) * dx + std::sin(angle) * dy + w / 2,
                       std::cos(angle) * dy - std::sin(angle) * dx + h / 2);
    });
}

using Making = std::function<QImage()>;

Milliseconds timeOfMaking(const Making &making)
{
    QImage kept; // giving the memory back is no part of it
    return timeOf([&] { kept = making(); });
}

void add(const char *name, const Making &ours, const char *besideName,
         const std::function<Milliseconds()> &beside, int rounds)
{
    benchmark::RegisterBenchmark(name,
                                 [=](benchmark::State &state) {
                                     compare(state, [&] { return timeOfMaking(ours); }, {besideName, beside});
                                 })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(rounds);
}

void addBoth(const char *name, const Making &ours, const Making &slowly)
{
    add(
        name, ours, "copy", [] { return timeOfMaking([] { return picture().copy(); }); }, 31);
    add(
        name, ours, "pixel by pixel", [=] { return timeOfMaking(slowly); }, 3);
}

void addFilter(const char *name, int number)
{
    const auto run = [number](const auto &function) {
        mdlFilter::Random random(1);
        return function(number, picture(), mdlFilter::Region{},
                        mdlFilter::Parameters{picture().pixel(10, 10), 0x123456U, &random});
    };
    addBoth(
        name,
        [=] { return run([](const auto &...arguments) { return mdlFilter::ApplyFilter(arguments...); }); },
        [=] { return run(SlowFilters::apply); });
}

void addFilters()
{
    addFilter("black and white", mdlFilter::BlackAndWhite);
    addFilter("brightness", mdlFilter::Brightness);
    addFilter("darkness", mdlFilter::Darkness);
    addFilter("gray black and white", mdlFilter::GrayBlackAndWhite);
    addFilter("grayscale", mdlFilter::Grayscale);
    addFilter("replace colours", mdlFilter::ReplaceColors);
    addFilter("blur", mdlFilter::Blur);
    addFilter("emboss", mdlFilter::Emboss);
    addFilter("sharpen", mdlFilter::Sharpen);
    addFilter("snow", mdlFilter::Snow);
    addFilter("diffuse", mdlFilter::Diffuse);
    addFilter("wave", mdlFilter::Wave);
    addFilter("crease", mdlFilter::Crease);
}

Making resized(float factor)
{
    return [=] {
        return TransformPicture(picture(), Kind::Resize, {.widthFactor = factor, .heightFactor = factor});
    };
}

void addEffects()
{
    const int right = picture().width() - 1;
    const int bottom = picture().height() - 1;
    const QSize size = picture().size();
    addBoth(
        "invert", [] { return TransformPicture(picture(), Kind::Invert); },
        [=] { return pixelByPixel(size, [](int x, int y) { return ~pixelAt(x, y) | 0xff000000U; }); });
    addBoth(
        "flip horizontal", [] { return TransformPicture(picture(), Kind::FlipHorizontal); },
        [=] { return pixelByPixel(size, [=](int x, int y) { return pixelAt(right - x, y); }); });
    addBoth(
        "flip vertical", [] { return TransformPicture(picture(), Kind::FlipVertical); },
        [=] { return pixelByPixel(size, [=](int x, int y) { return pixelAt(x, bottom - y); }); });
    for (const float angle : {180.0F, 90.0F, 270.0F, 45.0F, 30.0F}) {
        const std::string name = "rotate " + std::to_string(static_cast<int>(angle));
        addBoth(
            name.c_str(), [=] { return TransformPicture(picture(), Kind::Rotate, {.angle = angle}); },
            [=] { return rotateSlowly(static_cast<double>(angle)); });
    }
    addBoth("resize 0.9", resized(0.9F), [] { return resizeSlowly(0.9); });
    addBoth("resize 0.5", resized(0.5F), [] { return resizeSlowly(0.5); });
}

#ifdef SHOTLY_OPENCV
/// `work` fills a new matrix from the picture.
void addOpenCV(const char *name, const Making &ours, const char *what,
               void (*work)(const cv::Mat &, cv::Mat &))
{
    const auto beside = [=] {
        const cv::Mat source(picture().height(), picture().width(), CV_8UC4,
                             const_cast<uchar *>(picture().constBits())); // only read
        cv::Mat target;
        return timeOf([&] { work(source, target); });
    };
    add(name, ours, what, beside, 31);
}

Making filter(int number)
{
    return [=] { return mdlFilter::ApplyFilter(number, picture(), {}); };
}

void addOpenCV()
{
    cv::setNumThreads(1);
    addOpenCV("blur", filter(mdlFilter::Blur), "cv::blur 3 x 3", [](const cv::Mat &source, cv::Mat &target) {
        cv::blur(source, target, {3, 3});
    });
    addOpenCV("blur", filter(mdlFilter::Blur), "cv::filter2D 3 x 3 of 0.1",
              [](const cv::Mat &source, cv::Mat &target) {
                  cv::filter2D(source, target, -1, cv::Mat(3, 3, CV_32F, cv::Scalar(0.1)));
              });
    addOpenCV("grayscale", filter(mdlFilter::Grayscale), "cv::cvtColor to gray and back to four channels",
              [](const cv::Mat &source, cv::Mat &target) {
                  cv::Mat gray;
                  cv::cvtColor(source, gray, cv::COLOR_BGRA2GRAY);
                  cv::cvtColor(gray, target, cv::COLOR_GRAY2BGRA);
              });
    addOpenCV("black and white", filter(mdlFilter::BlackAndWhite), "cv::threshold of each component",
              [](const cv::Mat &source, cv::Mat &target) {
                  cv::threshold(source, target, 191, 255, cv::THRESH_BINARY);
              });
    addOpenCV(
        "invert", [] { return TransformPicture(picture(), Kind::Invert); }, "cv::bitwise_not",
        [](const cv::Mat &source, cv::Mat &target) { cv::bitwise_not(source, target); });
    addOpenCV(
        "rotate 90", [] { return TransformPicture(picture(), Kind::Rotate, {.angle = 90}); }, "cv::rotate",
        [](const cv::Mat &source, cv::Mat &target) { cv::rotate(source, target, cv::ROTATE_90_CLOCKWISE); });
    addOpenCV(
        "rotate 45", [] { return TransformPicture(picture(), Kind::Rotate, {.angle = 45}); },
        "cv::warpAffine, nearest",
        [](const cv::Mat &source, cv::Mat &target) {
            const cv::Point2f centre(static_cast<float>(source.cols) / 2,
                                     static_cast<float>(source.rows) / 2);
            cv::warpAffine(source, target, cv::getRotationMatrix2D(centre, -45, 1), source.size(),
                           cv::INTER_NEAREST);
        });
    addOpenCV("resize 0.9", resized(0.9F), "cv::resize, INTER_AREA",
              [](const cv::Mat &source, cv::Mat &target) {
                  cv::resize(source, target, {}, 0.9, 0.9, cv::INTER_AREA);
              });
    addOpenCV("resize 0.5", resized(0.5F), "cv::resize, INTER_AREA",
              [](const cv::Mat &source, cv::Mat &target) {
                  cv::resize(source, target, {}, 0.5, 0.5, cv::INTER_AREA);
              });
}
#else
void addOpenCV()
{
    std::puts("Built without OpenCV: nothing is measured beside it.");
}
#endif
} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    addFilters();
    addEffects();
    addOpenCV();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
