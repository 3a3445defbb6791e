// Drawings as SVG.
#include "ksx/kit/drawing.h"
#include <QDomDocument>
#include <gtest/gtest.h>

using Ksx::Kit::Box;
using Ksx::Kit::BoxKind;
using Ksx::Kit::Drawing;
using Ksx::Kit::Mark;
using Ksx::Kit::Note;
using Ksx::Kit::SvgForm;
using Ksx::Kit::svgOf;
using Ksx::Kit::Wire;

namespace {

Box aBox(const QString& title, double x)
{
    Box box;
    box.kind = BoxKind::Filter;
    box.title = title;
    box.detail = "filter";
    box.inputs = {{"source", 3}};
    box.outputs = {{"", 1}};
    box.x = x;
    box.y = 10;
    box.width = 100;
    box.height = 60;
    return box;
}

Drawing aDrawing(const QString& caption = "wood")
{
    Drawing drawing;
    drawing.caption = caption;
    drawing.boxes = {aBox("blend", 10), aBox("blur", 210)};
    drawing.wires = {Wire{0, 0, 1, 0, Mark::None, std::nullopt}};
    drawing.width = 320;
    drawing.height = 90;
    return drawing;
}

std::string textOf(const Drawing& drawing, SvgForm form = SvgForm::File)
{
    return svgOf(drawing, form).toStdString();
}

std::size_t countOf(const std::string& words, const std::string& text)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(words); at != std::string::npos; at = text.find(words, at + 1))
        ++count;
    return count;
}

bool isWellFormed(const QByteArray& text)
{
    return bool(QDomDocument().setContent(text));
}

double heightOf(const QByteArray& text)
{
    QDomDocument document;
    document.setContent(text);
    return document.documentElement().attribute("height").toDouble();
}

} // namespace

TEST(Svg, ADrawingIsAWellFormedDocument)
{
    EXPECT_TRUE(isWellFormed(svgOf(aDrawing())));
    EXPECT_TRUE(isWellFormed(svgOf(Drawing())));
    EXPECT_TRUE(isWellFormed(svgOf(std::vector<Drawing>())));
    EXPECT_TRUE(isWellFormed(svgOf(aDrawing(), SvgForm::Part)));
}

TEST(Svg, EachBoxWireAndConnectorIsThere)
{
    const std::string text = textOf(aDrawing(), SvgForm::Part);

    EXPECT_NE(text.find(">blend</text>"), std::string::npos);
    EXPECT_NE(text.find(">blur</text>"), std::string::npos);
    EXPECT_EQ(countOf(">source</text>", text), 2U);
    EXPECT_EQ(countOf("class=\"wire color\" d=\"M110 ", text), 1U);
}

TEST(Svg, TextsOfAPackageAreEscaped)
{
    Drawing drawing = aDrawing("</svg><script>alert(1)</script>");
    drawing.boxes[0].title = "\"><script>";
    drawing.boxes[0].inputs[0].name = "a&b";
    drawing.boxes[0].link = "x.html#'\"><script>";
    drawing.notes = {Note{1, "<b>\x01", false, Mark::None, 0, 0, 80, 30}};

    EXPECT_TRUE(isWellFormed(svgOf(drawing)));
    EXPECT_EQ(textOf(drawing).find("<script"), std::string::npos);
}

TEST(Svg, ABoxWithALinkLeadsThere)
{
    Drawing drawing = aDrawing();
    drawing.boxes[1].link = "#oak";

    EXPECT_EQ(countOf("<a href=\"#oak\">", textOf(drawing)), 1U);
}

TEST(Svg, TheLegendHasTheKindsAndTypesThatAreThere)
{
    const std::string text = textOf(aDrawing(), SvgForm::Part);

    EXPECT_EQ(countOf(">filter</text>", text), 3U);
    EXPECT_EQ(countOf(">color image</text>", text), 1U);
    EXPECT_EQ(countOf(">image of either kind</text>", text), 1U);
    EXPECT_EQ(countOf(">instance</text>", text), 0U);
    EXPECT_EQ(countOf(">grayscale image</text>", text), 0U);
}

TEST(Svg, AMarkIsAnOutlineASignAndALineOfTheLegend)
{
    Drawing drawing = aDrawing();
    drawing.boxes[0].mark = Mark::Added;
    drawing.wires[0].mark = Mark::Removed;

    const std::string text = textOf(drawing, SvgForm::Part);

    EXPECT_EQ(countOf("class=\"edge added\"", text), 1U);
    EXPECT_EQ(countOf("class=\"disc added\"", text), 2U);
    EXPECT_EQ(countOf("class=\"wire color removed\"", text), 1U);
    EXPECT_EQ(countOf(">added</text>", text), 1U);
    EXPECT_EQ(countOf(">removed</text>", text), 1U);
    EXPECT_EQ(countOf(">moved</text>", text), 0U);
}

TEST(Svg, DrawingsAreBesideEachOtherUnderTheirCaptions)
{
    const std::string text = svgOf({aDrawing("before"), aDrawing("after")}).toStdString();

    EXPECT_EQ(countOf("class=\"caption\"", text), 2U);
    EXPECT_EQ(countOf(">before</text>", text), 1U);
    EXPECT_EQ(countOf("<g transform=\"translate(392 0)\">", text), 1U);
    EXPECT_EQ(countOf("class=\"legend\"", text), 1U);
}

TEST(Svg, WhateverIsLeftOutIsTold)
{
    Drawing drawing = aDrawing();
    drawing.leftOut = 80000;

    EXPECT_EQ(countOf("80000 more parts are not drawn", textOf(drawing)), 1U);
    EXPECT_GT(heightOf(svgOf(drawing)), heightOf(svgOf(aDrawing())));
}

TEST(Svg, AFileFollowsTheSchemeOfTheReader)
{
    EXPECT_EQ(countOf("prefers-color-scheme:dark", textOf(aDrawing())), 1U);
    EXPECT_EQ(countOf("prefers-color-scheme:dark", textOf(aDrawing(), SvgForm::LightFile)), 0U);
    EXPECT_EQ(countOf("<style", textOf(aDrawing(), SvgForm::LightFile)), 1U);
    EXPECT_EQ(countOf("<style", textOf(aDrawing(), SvgForm::Part)), 0U);
}

TEST(Svg, TheSameDrawingGivesTheSameBytes)
{
    EXPECT_EQ(svgOf(aDrawing()), svgOf(aDrawing()));
}
