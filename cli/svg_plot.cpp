#include "cli/svg_plot.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include "cli/axis.h"
#include "cli/decimation.h"
#include "cli/plot_ranges.h"
#include "cli/utf8.h"

namespace kestrion::cli {
namespace {

// All lengths are in the picture's own units, which are pixels at its natural size.
constexpr double kWidth = 1000;
constexpr double kHeight = 568;
constexpr double kTop = 114;
constexpr double kBottom = 502;
constexpr double kRight = 968;
constexpr double kSmallText = 13;
// The usual width of a character beside the height of its text, in a sans-serif type.
constexpr double kCharacterAspect = 0.6;
constexpr int kVoltageTicks = 10;
constexpr int kMostTimeTicks = 10;
constexpr double kTickLabelGap = 18;

// Colours that stay apart for colour-blind readers and stand out on white. Beyond them the same
// colours come again with dashes.
constexpr std::array kColours{"#0072b2", "#d55e00", "#009e73", "#cc79a7",
                              "#7b5ea7", "#e69f00", "#56b4e9", "#222222"};

double TextWidth(std::size_t characters, double size) {
    return static_cast<double>(characters) * size * kCharacterAspect;
}

class Picture {
  public:
    Picture(const PlotTexts& texts, const Waveforms& waveforms)
        : texts_(texts),
          waveforms_(waveforms),
          voltage_(VoltageRange(waveforms), kVoltageTicks),
          time_(TimeRange(waveforms), kMostTimeTicks) {
        left_ = 58 + LabelWidth(voltage_);
        time_ = Axis(time_.Extent(), TimeTicksThatFit());
    }

    std::string Render() {
        Open();
        Headings();
        Legend();
        Grid();
        AxisTitles();
        Trigger();
        Traces();
        // The frame comes last, over the ends of the traces.
        Add(R"(<rect class="frame" x="{:.1f}" y="{}.5" width="{:.1f}" height="{}"/>)", left_ + 0.5,
            kTop, kRight - left_, kBottom - kTop);
        Add("</svg>");
        return std::move(out_);
    }

  private:
    template <typename... Args>
    void Add(fmt::format_string<Args...> format, Args&&... args) {
        fmt::format_to(std::back_inserter(out_), format, std::forward<Args>(args)...);
        out_ += '\n';
    }

    [[nodiscard]] static double LabelWidth(const Axis& axis) {
        std::size_t longest = 0;
        for (double tick : axis.Ticks()) {
            longest = std::max(longest, axis.Label(tick).size());
        }
        return TextWidth(longest, kSmallText);
    }

    // Fewer ticks until their labels stand apart: they are long where a short record lies far from
    // the trigger.
    [[nodiscard]] int TimeTicksThatFit() const {
        for (int ticks = kMostTimeTicks; ticks > 1; --ticks) {
            const Axis axis(time_.Extent(), ticks);
            const double distance = axis.Step() / axis.Extent().Span() * (kRight - left_);
            if (LabelWidth(axis) + kTickLabelGap <= distance) {
                return ticks;
            }
        }
        return 1;
    }

    [[nodiscard]] double X(double time) const {
        return left_ + time_.Position(time) * (kRight - left_);
    }
    [[nodiscard]] double Y(double volts) const {
        return kBottom - voltage_.Position(volts) * (kBottom - kTop);
    }
    // In the middle of a pixel row or column, where a thin line is sharp.
    [[nodiscard]] static double Sharp(double position) { return std::floor(position) + 0.5; }

    void Open() {
        Add(R"(<?xml version="1.0" encoding="UTF-8"?>)");
        Add(R"(<svg xmlns="http://www.w3.org/2000/svg" width="{0}" height="{1}" )"
            R"(viewBox="0 0 {0} {1}" role="img">)",
            kWidth, kHeight);
        Add("<title>{}</title>", EscapeXml(texts_.title));
        Add("<style>");
        Add("text {{ font-family: sans-serif; font-size: {}px; fill: #3c4450; }}", kSmallText);
        Add(".heading {{ font-size: 20px; font-weight: bold; fill: #1b2028; }}");
        Add(".subtitle {{ fill: #667080; }}");
        Add(".axis {{ font-size: 14px; text-anchor: middle; }}");
        Add(".x {{ text-anchor: middle; }}");
        Add(".y {{ text-anchor: end; }}");
        Add(".grid {{ stroke: #e3e7ec; stroke-width: 1; }}");
        Add(".zero {{ stroke: #9aa4b0; stroke-width: 1; }}");
        Add(".trigger {{ stroke: #5a6472; stroke-width: 1; stroke-dasharray: 5 4; }}");
        Add(".frame {{ fill: none; stroke: #b4bcc6; stroke-width: 1; }}");
        Add(".trace {{ fill: none; stroke-width: 1.4; stroke-linejoin: round; "
            "stroke-linecap: round; }}");
        Add("</style>");
        Add(R"(<rect width="{}" height="{}" fill="#ffffff"/>)", kWidth, kHeight);
    }

    void Headings() {
        const auto fitting = [&](const std::string& text, double size) {
            const auto most = static_cast<std::size_t>((kRight - left_) / size / kCharacterAspect);
            return EscapeXml(Shorten(CleanUtf8(text), most));
        };
        Add(R"(<text class="heading" x="{:.1f}" y="34">{}</text>)", left_,
            fitting(texts_.title, 20));
        if (!texts_.subtitle.empty()) {
            Add(R"(<text class="subtitle" x="{:.1f}" y="56">{}</text>)", left_,
                fitting(texts_.subtitle, kSmallText));
        }
    }

    void Legend() {
        constexpr double kSwatch = 20;
        constexpr double kSwatchGap = 6;
        constexpr double kMostGap = 24;
        double names = 0;
        for (const Waveform& waveform : waveforms_) {
            names += NameWidth(waveform) + kSwatch + kSwatchGap;
        }
        // The entries move together until all of them fit.
        const double gap =
            std::min(kMostGap, (kRight - left_ - names) / static_cast<double>(waveforms_.size()));
        double x = left_;
        Add(R"(<g class="legend">)");
        for (std::size_t i = 0; i < waveforms_.size(); ++i) {
            Add(R"(<line x1="{:.1f}" y1="77.5" x2="{:.1f}" y2="77.5" stroke-width="3" {}/>)", x,
                x + kSwatch, Stroke(i));
            x += kSwatch + kSwatchGap;
            Add(R"(<text x="{:.1f}" y="82">{}</text>)", x, EscapeXml(waveforms_[i].source));
            x += NameWidth(waveforms_[i]) + gap;
        }
        Add("</g>");
    }

    [[nodiscard]] static double NameWidth(const Waveform& waveform) {
        return TextWidth(CountCharacters(waveform.source), kSmallText);
    }

    [[nodiscard]] static std::string Stroke(std::size_t trace) {
        return fmt::format(R"(stroke="{}"{})", kColours[trace % kColours.size()],
                           trace < kColours.size() ? "" : R"( stroke-dasharray="6 3")");
    }

    void Grid() {
        Add(R"(<g class="y">)");
        for (double tick : voltage_.Ticks()) {
            Add(R"(<line class="grid" x1="{:.1f}" y1="{:.1f}" x2="{:.1f}" y2="{:.1f}"/>)", left_,
                Sharp(Y(tick)), kRight, Sharp(Y(tick)));
            Add(R"(<text x="{:.1f}" y="{:.1f}">{}</text>)", left_ - 8, Y(tick) + 4.5,
                Minus(voltage_.Label(tick)));
        }
        Add("</g>");
        Add(R"(<g class="x">)");
        for (double tick : time_.Ticks()) {
            Add(R"(<line class="grid" x1="{:.1f}" y1="{}" x2="{:.1f}" y2="{}"/>)", Sharp(X(tick)),
                kTop, Sharp(X(tick)), kBottom);
            Add(R"(<text x="{:.1f}" y="{}">{}</text>)", X(tick), kBottom + 20,
                Minus(time_.Label(tick)));
        }
        Add("</g>");
        if (voltage_.Extent().Contains(0)) {
            Add(R"(<line class="zero" x1="{:.1f}" y1="{:.1f}" x2="{:.1f}" y2="{:.1f}"/>)", left_,
                Sharp(Y(0)), kRight, Sharp(Y(0)));
        }
    }

    // The typographic minus is as wide as a digit; a hyphen isn't.
    [[nodiscard]] static std::string Minus(const std::string& label) {
        return label.starts_with('-') ? "−" + label.substr(1) : label;
    }

    void AxisTitles() {
        Add(R"(<text class="axis" x="{:.1f}" y="{}">Time ({}s)</text>)", (left_ + kRight) / 2,
            kBottom + 48, time_.PrefixSymbol());
        Add(R"svg(<text class="axis" transform="translate(26 {:.1f}) rotate(-90)">)svg"
            "Voltage ({}V)</text>",
            (kTop + kBottom) / 2, voltage_.PrefixSymbol());
    }

    void Trigger() {
        if (!time_.Extent().Contains(0)) {
            return;
        }
        const double x = Sharp(X(0));
        Add(R"(<line class="trigger" x1="{0:.1f}" y1="{1}" x2="{0:.1f}" y2="{2}"/>)", x, kTop,
            kBottom);
        Add(R"(<path d="M{:.1f} {}h12l-6 8z" fill="#5a6472"/>)", x - 6, kTop - 9);
        // At the right end the word stands before the mark.
        const bool before = x > kRight - 60;
        Add(R"(<text class="subtitle" x="{:.1f}" y="{}" text-anchor="{}">trigger</text>)",
            before ? x - 11 : x + 11, kTop - 5, before ? "end" : "start");
    }

    void Traces() {
        Add(R"(<clipPath id="area"><rect x="{:.1f}" y="{}" width="{:.1f}" height="{}"/></clipPath>)",
            left_, kTop, kRight - left_, kBottom - kTop);
        Add("<g clip-path=\"url(#area)\">");
        for (std::size_t i = 0; i < waveforms_.size(); ++i) {
            Trace(waveforms_[i], Stroke(i));
        }
        Add("</g>");
    }

    void Trace(const Waveform& waveform, const std::string& stroke) {
        const auto columns = static_cast<std::size_t>(kRight - left_);
        std::string path;
        for (std::size_t point : PointsToDraw(waveform.volts, columns)) {
            fmt::format_to(std::back_inserter(path), "{}{:.2f} {:.2f}", path.empty() ? "M" : "L",
                           X(waveform.TimeAt(point)), Y(waveform.volts[point]));
        }
        // A line of a single point would show nothing.
        if (waveform.volts.size() == 1) {
            Add(R"(<circle class="trace" {} cx="{:.2f}" cy="{:.2f}" r="4"/>)", stroke,
                X(waveform.TimeAt(0)), Y(waveform.volts[0]));
            return;
        }
        if (!path.empty()) {
            Add(R"(<path class="trace" {} d="{}"/>)", stroke, path);
        }
    }

    const PlotTexts& texts_;
    const Waveforms& waveforms_;
    Axis voltage_;
    Axis time_;
    double left_ = 0;
    std::string out_;
};

}  // namespace

std::string RenderSvg(const PlotTexts& texts, const Waveforms& waveforms) {
    return Picture(texts, waveforms).Render();
}

std::string EscapeXml(std::string_view text) {
    std::string result;
    for (char c : CleanUtf8(text)) {
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            case '\'':
                result += "&apos;";
                break;
            default:
                // Of the control characters XML 1.0 has tab, LF and CR only.
                if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r') {
                    result += "\xEF\xBF\xBD";
                } else {
                    result += c;
                }
        }
    }
    return result;
}

}  // namespace kestrion::cli
