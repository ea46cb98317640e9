"""Writes the documents of the sample library, each format by the library that Debian has for it."""

import io
import zipfile
from datetime import datetime
from email.message import EmailMessage

import docx
import openpyxl
from odf import text as odftext
from odf.opendocument import OpenDocumentText
from odf.style import ParagraphProperties, Style, TextProperties
from openpyxl.styles import Font
from reportlab.lib import colors
from reportlab.lib.pagesizes import A4
from reportlab.lib.styles import ParagraphStyle, getSampleStyleSheet
from reportlab.platypus import (Image, PageBreak, Paragraph, SimpleDocTemplate, Spacer, Table,
                                TableStyle)

STYLES = getSampleStyleSheet()
BODY = ParagraphStyle("body", parent=STYLES["BodyText"], fontSize=11, leading=15.5, spaceAfter=8)
# Documents are the same bytes each time, whenever they are made.
FIXED_TIME = datetime(2025, 1, 1)


def footer(canvas, document):
    canvas.setFont("Helvetica", 9)
    canvas.setFillGray(0.45)
    canvas.drawCentredString(A4[0] / 2, 30, str(document.page))


def pdf(path, title, story, author="Nora Lindqvist"):
    """`story`: text is a paragraph, "# text" a heading, "---" a new page; flowables as they are."""
    flow = [Paragraph(title, STYLES["Title"]), Spacer(1, 10)]
    for part in story:
        if not isinstance(part, str):
            flow += [part, Spacer(1, 8)]
        elif part == "---":
            flow.append(PageBreak())
        elif part.startswith("# "):
            flow.append(Paragraph(part[2:], STYLES["Heading2"]))
        else:
            flow.append(Paragraph(part, BODY))
    SimpleDocTemplate(path, pagesize=A4, title=title, author=author, leftMargin=64, rightMargin=64,
                      topMargin=60, bottomMargin=60, invariant=1,
                      ).build(flow, onFirstPage=footer, onLaterPages=footer)


def picture(image, width=430):
    """A drawn picture as part of a PDF document."""
    stream = io.BytesIO()
    image.save(stream, "JPEG", quality=85)
    return Image(stream, width, width * image.size[1] / image.size[0])


def table(rows, widths=None):
    made = Table(rows, colWidths=widths)
    made.setStyle(TableStyle([
        ("FONTNAME", (0, 0), (-1, 0), "Helvetica-Bold"),
        ("BACKGROUND", (0, 0), (-1, 0), colors.HexColor("#e3eef0")),
        ("LINEBELOW", (0, 0), (-1, -1), 0.4, colors.HexColor("#b8c4c8")),
        ("ALIGN", (1, 0), (-1, -1), "RIGHT"),
    ]))
    return made


def word(path, title, story):
    document = docx.Document()
    document.core_properties.author = "Nora Lindqvist"
    document.core_properties.created = document.core_properties.modified = FIXED_TIME
    document.core_properties.title = title
    document.add_heading(title, 0)
    for part in story:
        if part.startswith("# "):
            document.add_heading(part[2:], 1)
        elif part.startswith("- "):
            document.add_paragraph(part[2:], style="List Bullet")
        else:
            document.add_paragraph(part)
    document.save(path)


def odt(path, title, story):
    document = OpenDocumentText()
    heading = Style(name="Title1", family="paragraph")
    heading.addElement(TextProperties(fontsize="18pt", fontweight="bold"))
    heading.addElement(ParagraphProperties(marginbottom="0.4cm"))
    document.styles.addElement(heading)
    document.text.addElement(odftext.H(outlinelevel=1, stylename=heading, text=title))
    for part in story:
        document.text.addElement(odftext.P(text=part.removeprefix("# ")))
    document.save(path)


def sheet(path, name, rows, total_column=None):
    book = openpyxl.Workbook()
    book.properties.creator = "Nora Lindqvist"
    book.properties.created = book.properties.modified = FIXED_TIME
    page = book.active
    page.title = name
    for row in rows:
        page.append(row)
    for cell in page[1]:
        cell.font = Font(bold=True)
    if total_column:
        last = len(rows)
        page.append(["Total"] + [None] * (len(rows[0]) - 1))
        page[f"{total_column}{last + 1}"] = f"=SUM({total_column}2:{total_column}{last})"
    for column in "ABCD":
        page.column_dimensions[column].width = 22
    book.save(path)


def mail(path, sender, receiver, subject, date, body, attachment=None):
    message = EmailMessage()
    message["From"], message["To"], message["Subject"], message["Date"] = sender, receiver, subject, date
    message["Message-ID"] = f"<{abs(hash((len(subject), len(body))))}@mail.example>"
    message.set_content(body)
    if attachment:
        name, data = attachment
        message.add_attachment(data, maintype="text", subtype="csv", filename=name)
        message.set_boundary("part-of-the-sample-library")
    with open(path, "wb") as file:
        file.write(bytes(message))


def archive(path, members):
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as file:
        for name, content in members.items():
            file.writestr(zipfile.ZipInfo(name, (2024, 11, 3, 9, 30, 0)), content)


# Presentations: no library is packaged, and the format asks for a master, a layout and a theme
# behind every slide.
XML = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'
OFFICE = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
SPACES = ('xmlns:a="http://schemas.openxmlformats.org/drawingml/2006/main" '
          f'xmlns:r="{OFFICE}" xmlns:p="http://schemas.openxmlformats.org/presentationml/2006/main"')
GROUP = ('<p:nvGrpSpPr><p:cNvPr id="1" name=""/><p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr><p:grpSpPr/>')
COLOURS = ["000000", "FFFFFF", "1C5570", "EEF4F5", "2F8F9D", "F0B242", "D95F48", "6A5AA0", "78A05A",
           "96A0AA", "1155CC", "774488"]


def relations(*targets):
    links = "".join(f'<Relationship Id="rId{number}" Type="{OFFICE}/{kind}" Target="{target}"/>'
                    for number, (kind, target) in enumerate(targets, 1))
    return (f'{XML}<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">'
            f"{links}</Relationships>")


def box(number, kind, top, height, lines, size):
    paragraphs = "".join(f'<a:p><a:r><a:rPr lang="en-GB" sz="{size}"/><a:t>{line}</a:t></a:r></a:p>'
                         for line in lines)
    return (f'<p:sp><p:nvSpPr><p:cNvPr id="{number}" name="{kind}"/><p:cNvSpPr/><p:nvPr/></p:nvSpPr>'
            f'<p:spPr><a:xfrm><a:off x="700000" y="{top}"/><a:ext cx="10700000" cy="{height}"/></a:xfrm>'
            '<a:prstGeom prst="rect"><a:avLst/></a:prstGeom></p:spPr>'
            f"<p:txBody><a:bodyPr/><a:lstStyle/>{paragraphs}</p:txBody></p:sp>")


def theme():
    names = ["dk1", "lt1", "dk2", "lt2", "accent1", "accent2", "accent3", "accent4", "accent5",
             "accent6", "hlink", "folHlink"]
    scheme = "".join(f'<a:{name}><a:srgbClr val="{value}"/></a:{name}>'
                     for name, value in zip(names, COLOURS))
    face = '<a:latin typeface="DejaVu Sans"/><a:ea typeface=""/><a:cs typeface=""/>'
    fill = '<a:solidFill><a:schemeClr val="phClr"/></a:solidFill>'
    return (f'{XML}<a:theme {SPACES} name="Plain"><a:themeElements><a:clrScheme name="Plain">{scheme}'
            f'</a:clrScheme><a:fontScheme name="Plain"><a:majorFont>{face}</a:majorFont><a:minorFont>'
            f'{face}</a:minorFont></a:fontScheme><a:fmtScheme name="Plain"><a:fillStyleLst>{fill * 3}'
            f'</a:fillStyleLst><a:lnStyleLst>{f"<a:ln>{fill}</a:ln>" * 3}</a:lnStyleLst><a:effectStyleLst>'
            f'{"<a:effectStyle><a:effectLst/></a:effectStyle>" * 3}</a:effectStyleLst><a:bgFillStyleLst>'
            f'{fill * 3}</a:bgFillStyleLst></a:fmtScheme></a:themeElements></a:theme>')


def slides(path, pages):
    """`pages`: a list of (title, list of lines)."""
    kind = "application/vnd.openxmlformats-officedocument.presentationml."
    overrides = {"/ppt/presentation.xml": kind + "presentation.main+xml",
                 "/ppt/slideMasters/slideMaster1.xml": kind + "slideMaster+xml",
                 "/ppt/slideLayouts/slideLayout1.xml": kind + "slideLayout+xml",
                 "/ppt/theme/theme1.xml": "application/vnd.openxmlformats-officedocument.theme+xml"}
    parts = {
        "_rels/.rels": relations(("officeDocument", "ppt/presentation.xml")),
        "ppt/theme/theme1.xml": theme(),
        "ppt/slideMasters/slideMaster1.xml":
            f'{XML}<p:sldMaster {SPACES}><p:cSld><p:spTree>{GROUP}</p:spTree></p:cSld>'
            '<p:clrMap bg1="lt1" tx1="dk1" bg2="lt2" tx2="dk2" accent1="accent1" accent2="accent2" '
            'accent3="accent3" accent4="accent4" accent5="accent5" accent6="accent6" hlink="hlink" '
            'folHlink="folHlink"/><p:sldLayoutIdLst><p:sldLayoutId id="2147483649" r:id="rId1"/>'
            "</p:sldLayoutIdLst></p:sldMaster>",
        "ppt/slideMasters/_rels/slideMaster1.xml.rels": relations(
            ("slideLayout", "../slideLayouts/slideLayout1.xml"), ("theme", "../theme/theme1.xml")),
        "ppt/slideLayouts/slideLayout1.xml":
            f'{XML}<p:sldLayout {SPACES} type="blank"><p:cSld><p:spTree>{GROUP}</p:spTree></p:cSld>'
            "<p:clrMapOvr><a:masterClrMapping/></p:clrMapOvr></p:sldLayout>",
        "ppt/slideLayouts/_rels/slideLayout1.xml.rels": relations(
            ("slideMaster", "../slideMasters/slideMaster1.xml")),
    }
    for number, (title, lines) in enumerate(pages, 1):
        overrides[f"/ppt/slides/slide{number}.xml"] = kind + "slide+xml"
        parts[f"ppt/slides/slide{number}.xml"] = (
            f'{XML}<p:sld {SPACES}><p:cSld><p:spTree>{GROUP}'
            f'{box(2, "Title", 500000, 1100000, [title], 4000)}'
            f'{box(3, "Text", 1900000, 4300000, lines, 2400)}'
            "</p:spTree></p:cSld><p:clrMapOvr><a:masterClrMapping/></p:clrMapOvr></p:sld>")
        parts[f"ppt/slides/_rels/slide{number}.xml.rels"] = relations(
            ("slideLayout", "../slideLayouts/slideLayout1.xml"))
    numbers = range(1, len(pages) + 1)
    ids = "".join(f'<p:sldId id="{255 + number}" r:id="rId{number + 1}"/>' for number in numbers)
    parts["ppt/presentation.xml"] = (
        f'{XML}<p:presentation {SPACES}><p:sldMasterIdLst><p:sldMasterId id="2147483648" r:id="rId1"/>'
        f'</p:sldMasterIdLst><p:sldIdLst>{ids}</p:sldIdLst><p:sldSz cx="12192000" cy="6858000"/>'
        '<p:notesSz cx="6858000" cy="9144000"/></p:presentation>')
    parts["ppt/_rels/presentation.xml.rels"] = relations(
        ("slideMaster", "slideMasters/slideMaster1.xml"),
        *[("slide", f"slides/slide{number}.xml") for number in numbers])
    types = "".join(f'<Override PartName="{name}" ContentType="{type_}"/>'
                    for name, type_ in overrides.items())
    content_types = (
        f'{XML}<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">'
        '<Default Extension="rels" ContentType='
        '"application/vnd.openxmlformats-package.relationships+xml"/>'
        f'<Default Extension="xml" ContentType="application/xml"/>{types}</Types>')
    archive(path, {"[Content_Types].xml": content_types, **parts})
