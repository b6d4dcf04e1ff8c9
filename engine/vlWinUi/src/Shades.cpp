#include "Shades.h"

#include <cmath>
#include <utility>

namespace vlWinUi {
namespace {

QColor toQt(const Color& color) {
    return {color.r, color.g, color.b, color.a};
}

QColor mix(const QColor& a, const QColor& b, float share) {
    return QColor::fromRgbF(a.redF() + (b.redF() - a.redF()) * share,
                            a.greenF() + (b.greenF() - a.greenF()) * share,
                            a.blueF() + (b.blueF() - a.blueF()) * share);
}

double luminance(const QColor& color) {
    const auto linear = [](double c) {
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

QColor readableOn(const QColor& ground) {
    const QColor light(250, 248, 246);
    const QColor dark(16, 16, 16);
    return contrast(light, ground) >= contrast(dark, ground) ? light : dark;
}

} // namespace

double contrast(const QColor& a, const QColor& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

Shades::Shades(const Theme& theme) {
    background = toQt(theme.getColor(1));
    accent = toQt(theme.getColor(2));
    const QColor warmDeep = toQt(theme.getColor(3));
    focus = toQt(theme.getColor(4));
    text = toQt(theme.getColor(5));
    const bool dark = luminance(background) < luminance(text);
    const QColor paper = dark ? text : QColor(Qt::white);
    // Dark: each layer nearer to the person is lighter. Light: fields are paper on a tinted ground.
    background = dark ? mix(background, text, 0.035F) : mix(background, text, 0.02F);
    bar = mix(background, text, dark ? 0.035F : 0.055F);
    field = dark ? toQt(theme.getColor(1)) : mix(background, paper, 0.85F);
    raised = dark ? mix(background, text, 0.11F) : mix(background, paper, 0.6F);
    raisedHover = mix(mix(raised, text, dark ? 0.07F : 0.03F), dark ? warmDeep : focus, 0.22F);
    pressed = mix(raised, accent, 0.55F);
    hover = mix(field, dark ? warmDeep : focus, dark ? 0.45F : 0.2F);
    border = mix(background, text, dark ? 0.17F : 0.2F);
    borderStrong = mix(background, text, dark ? 0.27F : 0.36F);
    accentText = readableOn(accent);
    muted = mix(text, background, dark ? 0.3F : 0.2F);
    disabled = mix(text, background, 0.55F);
    problem = dark ? QColor(214, 92, 84) : QColor(186, 48, 42);
    error = dark ? QColor(240, 122, 112) : QColor(172, 34, 30);
    warning = dark ? QColor(222, 176, 84) : QColor(128, 82, 0);
}

QPalette Shades::palette() const {
    QPalette palette;
    const std::pair<QPalette::ColorRole, QColor> roles[] = {
            {QPalette::Window, background},
            {QPalette::WindowText, text},
            {QPalette::Base, field},
            {QPalette::AlternateBase, bar},
            {QPalette::Text, text},
            {QPalette::Button, raised},
            {QPalette::ButtonText, text},
            {QPalette::BrightText, accentText},
            {QPalette::Highlight, accent},
            {QPalette::HighlightedText, accentText},
            {QPalette::ToolTipBase, bar},
            {QPalette::ToolTipText, text},
            {QPalette::PlaceholderText, muted},
            {QPalette::Light, raisedHover},
            {QPalette::Midlight, border},
            {QPalette::Mid, border},
            {QPalette::Dark, borderStrong},
            {QPalette::Shadow, background},
            {QPalette::Link, focus},
    };
    for (const auto& [role, color] : roles)
        palette.setColor(role, color);
    for (const auto role : {QPalette::WindowText,
                            QPalette::Text,
                            QPalette::ButtonText,
                            QPalette::HighlightedText,
                            QPalette::PlaceholderText})
        palette.setColor(QPalette::Disabled, role, disabled);
    palette.setColor(QPalette::Disabled, QPalette::Base, background);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, border);
    return palette;
}

QString Shades::fillIn(QString sheet) const {
    const std::pair<const char*, QColor> names[] = {
            {"background", background},
            {"bar", bar},
            {"field", field},
            {"raised", raised},
            {"raisedHover", raisedHover},
            {"pressed", pressed},
            {"hover", hover},
            {"border", border},
            {"borderStrong", borderStrong},
            {"focus", focus},
            {"accent", accent},
            {"accentText", accentText},
            {"text", text},
            {"muted", muted},
            {"disabled", disabled},
            {"problem", problem},
    };
    for (const auto& [name, color] : names)
        sheet.replace(QStringLiteral("{{%1}}").arg(name), color.name());
    return sheet;
}

} // namespace vlWinUi
