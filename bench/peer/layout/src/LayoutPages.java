import com.fasterxml.jackson.databind.JsonNode;
import com.fasterxml.jackson.databind.ObjectMapper;
import java.awt.Color;
import java.awt.font.TextAttribute;
import java.io.File;
import java.math.BigDecimal;
import java.net.URL;
import java.net.URLClassLoader;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.text.AttributedCharacterIterator.Attribute;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Comparator;
import java.util.HashMap;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.TimeZone;
import java.util.TreeSet;
import net.sf.jasperreports.engine.DefaultJasperReportsContext;
import net.sf.jasperreports.engine.JRBoxContainer;
import net.sf.jasperreports.engine.JRCommonGraphicElement;
import net.sf.jasperreports.engine.JRDataSource;
import net.sf.jasperreports.engine.JRField;
import net.sf.jasperreports.engine.JRLineBox;
import net.sf.jasperreports.engine.JRParameter;
import net.sf.jasperreports.engine.JRPen;
import net.sf.jasperreports.engine.JRPrintAnchor;
import net.sf.jasperreports.engine.JRPrintElement;
import net.sf.jasperreports.engine.JRPrintEllipse;
import net.sf.jasperreports.engine.JRPrintFrame;
import net.sf.jasperreports.engine.JRPrintHyperlink;
import net.sf.jasperreports.engine.JRPrintImage;
import net.sf.jasperreports.engine.JRPrintLine;
import net.sf.jasperreports.engine.JRPrintPage;
import net.sf.jasperreports.engine.JRPrintRectangle;
import net.sf.jasperreports.engine.JRPrintText;
import net.sf.jasperreports.engine.JRStyledTextAttributeSelector;
import net.sf.jasperreports.engine.JasperCompileManager;
import net.sf.jasperreports.engine.JasperFillManager;
import net.sf.jasperreports.engine.JasperPrint;
import net.sf.jasperreports.engine.JasperReport;
import net.sf.jasperreports.engine.util.JRStyledText;

/**
 * Fills layout cases with the Java engine and writes the pages that each must give beside it: NAME.xml for NAME.jrxml,
 * an element on a line, what is usual left out. tests/engine/fill/page_lines.cpp writes the same lines.
 * With --shipped, definitions are filled with the golden rows of their tests, to see whether that works.
 */
public final class LayoutPages {
    private static final JRStyledTextAttributeSelector ALL =
        JRStyledTextAttributeSelector.getAllSelector(DefaultJasperReportsContext.getInstance());

    /** Rows of texts, read as the class that the definition gives to a field. */
    private static final class Rows implements JRDataSource {
        private final List<String> names = new ArrayList<>();
        private final List<List<String>> rows = new ArrayList<>();
        private int at = -1;

        /** What a case names in its property "rows": a CSV file beside it, or a number of rows without fields. */
        static Rows named(Path folder, String source) throws Exception {
            Rows read = new Rows();
            if (!source.endsWith(".csv")) {
                for (int row = 0; row < Integer.parseInt(source); ++row) read.rows.add(List.of());
                return read;
            }
            List<String> lines = Files.readAllLines(folder.resolve(source), StandardCharsets.UTF_8);
            read.names.addAll(List.of(lines.get(0).split(",", -1)));
            for (String line : lines.subList(1, lines.size())) read.rows.add(List.of(line.split(",", -1)));
            return read;
        }

        /** The rows of a data pipe as JSON. */
        static Rows ofPipe(Path file) throws Exception {
            Rows read = new Rows();
            JsonNode pipe = new ObjectMapper().readTree(file.toFile());
            pipe.get("fields").forEach(field -> read.names.add(field.get("name").asText()));
            pipe.get("rows").forEach(row -> {
                read.rows.add(new ArrayList<>());
                row.forEach(cell -> read.rows.get(read.rows.size() - 1).add(cell.isNull() ? "" : cell.asText()));
            });
            return read;
        }

        @Override
        public boolean next() {
            return ++at < rows.size();
        }

        @Override
        public Object getFieldValue(JRField field) {
            int column = names.indexOf(field.getName());
            String text = column < 0 ? "" : rows.get(at).get(column);
            if (text.isEmpty()) return null;
            return switch (field.getValueClassName()) {
                case "java.lang.Integer" -> Integer.valueOf(text);
                case "java.lang.Double" -> Double.valueOf(text);
                case "java.lang.Float" -> Float.valueOf(text);
                case "java.lang.Boolean" -> Boolean.valueOf(text);
                case "java.math.BigDecimal" -> new BigDecimal(text);
                case "java.util.Date" -> java.sql.Date.valueOf(text.substring(0, 10));
                default -> text;
            };
        }
    }

    /** Finds pictures in the folder of a case, and its subreports, "parts/NAME.jasper", by making them there. A part
     *  names others beside it. */
    private static final class Parts extends ClassLoader {
        private Path folder;

        Parts() {
            super(LayoutPages.class.getClassLoader());
        }

        @Override
        public URL getResource(String name) {
            if (folder == null) return super.getResource(name);
            Path parts = name.startsWith("parts/") ? folder : folder.resolve("parts");
            Path definition = parts.resolve(name.replaceFirst("\\.jasper$", ".jrxml"));
            try {
                if (name.endsWith(".png")) return folder.resolve(name).toUri().toURL();
                if (!name.endsWith(".jasper") || !Files.exists(definition)) return super.getResource(name);
                Path compiled = Files.createTempFile("part", ".jasper");
                compiled.toFile().deleteOnExit();
                JasperCompileManager.compileReportToFile(definition.toString(), compiled.toString());
                return compiled.toUri().toURL();
            } catch (Exception failure) {
                throw new IllegalStateException(name, failure);
            }
        }
    }

    public static void main(String[] arguments) {
        boolean shipped = arguments.length > 0 && arguments[0].equals("--shipped");
        var context = DefaultJasperReportsContext.getInstance();
        context.setProperty("net.sf.jasperreports.default.font.name", "DejaVu Sans");
        context.setProperty("net.sf.jasperreports.text.save.line.breaks", "true");
        // a definition that never ends is told and left out
        context.setProperty("net.sf.jasperreports.governor.max.pages.enabled", "true");
        context.setProperty("net.sf.jasperreports.governor.max.pages", "300");
        int failed = 0;
        Parts parts = new Parts();
        Thread.currentThread().setContextClassLoader(parts);
        for (String definition : Arrays.asList(arguments).subList(shipped ? 1 : 0, arguments.length)) {
            try {
                JasperReport report = JasperCompileManager.compileReport(definition);
                if (shipped) {
                    fillShipped(new File(definition), report);
                } else {
                    parts.folder = Path.of(definition).toAbsolutePath().getParent();
                    write(new File(definition), report);
                }
            } catch (Exception | StackOverflowError failure) {
                System.err.println(definition + ": " + String.valueOf(failure.getMessage()).lines().limit(3).toList());
                ++failed;
            }
        }
        System.exit(failed == 0 ? 0 : 1);
    }

    private static void write(File definition, JasperReport report) throws Exception {
        String rows = report.getPropertiesMap().getProperty("rows");
        Map<String, Object> parameters = new HashMap<>();
        parameters.put(JRParameter.REPORT_LOCALE, Locale.US);
        parameters.put(JRParameter.REPORT_TIME_ZONE, TimeZone.getTimeZone("GMT"));
        var source = Rows.named(definition.toPath().toAbsolutePath().getParent(), rows == null ? "1" : rows);
        JasperPrint print = JasperFillManager.fillReport(report, parameters, source);

        StringBuilder out = new StringBuilder("<pages>\n");
        for (JRPrintPage page : print.getPages()) {
            out.append("<page>\n");
            elements(page.getElements(), print, out);
            out.append("</page>\n");
        }
        out.append("</pages>\n");
        Path pages = Path.of(definition.getPath().replaceFirst("\\.jrxml$", ".xml"));
        Files.writeString(pages, out, StandardCharsets.UTF_8);
    }

    /** The bundles of a definition lie beside it. */
    private static Map<String, Object> wordsBeside(File definition) throws Exception {
        Map<String, Object> parameters = new HashMap<>();
        URL folder = definition.getAbsoluteFile().getParentFile().toURI().toURL();
        parameters.put(JRParameter.REPORT_CLASS_LOADER, new URLClassLoader(new URL[] {folder}));
        return parameters;
    }

    private static void fillShipped(File definition, JasperReport report) throws Exception {
        String name = definition.getName().replaceFirst("\\.rpt$", ".json");
        Rows rows = Rows.ofPipe(Path.of("tests/golden/definitions", name));
        if (JasperFillManager.fillReport(report, wordsBeside(definition), rows).getPages().isEmpty()) {
            throw new IllegalStateException("no page");
        }
    }

    private static void elements(List<JRPrintElement> elements, JasperPrint print, StringBuilder out) {
        for (JRPrintElement element : elements) {
            String kind = kind(element);
            if (kind.isEmpty()) continue;
            out.append('<').append(kind);
            attribute(out, "x", element.getX());
            attribute(out, "y", element.getY());
            attribute(out, "width", element.getWidth());
            attribute(out, "height", element.getHeight());
            looks(element, out);
            if (element instanceof JRPrintText text) {
                text(text, out);
                out.append("</text>\n");
            } else if (element instanceof JRPrintFrame frame && !frame.getElements().isEmpty()) {
                out.append(">\n");
                elements(frame.getElements(), print, out);
                out.append("</frame>\n");
            } else {
                out.append("/>\n");
            }
        }
    }

    private static String kind(JRPrintElement element) {
        if (element instanceof JRPrintText) return "text";
        if (element instanceof JRPrintLine) return "line";
        if (element instanceof JRPrintRectangle) return "rectangle";
        if (element instanceof JRPrintEllipse) return "ellipse";
        if (element instanceof JRPrintFrame) return "frame";
        if (element instanceof JRPrintImage) return "image";
        return "";  // a mark for interactive viewers
    }

    private static void attribute(StringBuilder out, String name, Object value) {
        out.append(' ').append(name).append("=\"").append(escaped(value.toString())).append('"');
    }

    private static void unless(String usual, StringBuilder out, String name, Object value) {
        if (!usual.equals(value.toString())) attribute(out, name, value);
    }

    private static String escaped(String text) {
        return text.replace("&", "&amp;").replace("<", "&lt;").replace("\"", "&quot;").replace("\n", "&#10;")
            .replace("\t", "&#9;");
    }

    /** What one version of the engine calls "getMode" is "getModeValue" in another, and "getFontSize" "getFontsize". */
    private static String ask(Object object, String getter) {
        for (String name : List.of(getter + "Value", getter, getter.replace("Size", "size"))) {
            try {
                return String.valueOf(object.getClass().getMethod(name).invoke(object)).toUpperCase(Locale.ROOT);
            } catch (NoSuchMethodException next) {
                continue;
            } catch (ReflectiveOperationException failure) {
                throw new IllegalStateException(failure);
            }
        }
        throw new IllegalStateException(getter);
    }

    private static float size(JRPrintText text) {
        return Float.parseFloat(ask(text, "getFontSize"));
    }

    private static String color(Color color) {
        String text = String.format("#%06x", color.getRGB() & 0xFFFFFF);
        return color.getAlpha() == 255 ? text : text + String.format("%02x", color.getAlpha());
    }

    private static String number(float value) {
        return new BigDecimal(Float.toString(value)).stripTrailingZeros().toPlainString();
    }

    private static String pen(JRPen pen, float usual) {
        float width = pen.getLineWidth() == null ? usual : pen.getLineWidth();
        return width == 0 ? "none" : number(width) + " " + ask(pen, "getLineStyle") + " " + color(pen.getLineColor());
    }

    private static void looks(JRPrintElement element, StringBuilder out) {
        if (element instanceof JRPrintText || element instanceof JRCommonGraphicElement) {
            unless("#000000", out, "fore", color(element.getForecolor()));
        }
        if (ask(element, "getMode").equals("OPAQUE") && !(element instanceof JRPrintLine)) {
            boolean shape = element instanceof JRPrintRectangle || element instanceof JRPrintEllipse;
            unless(shape ? "#ffffff" : "", out, "back", color(element.getBackcolor()));
        } else if (element instanceof JRPrintRectangle || element instanceof JRPrintEllipse) {
            attribute(out, "back", "none");
        }
        if (element instanceof JRPrintLine line) {
            unless("TOP_DOWN", out, "direction", ask(line, "getDirection").replace("NULL", "TOP_DOWN"));
        }
        if (element instanceof JRPrintRectangle rectangle) unless("0", out, "radius", rectangle.getRadius());
        if (element instanceof JRCommonGraphicElement shape && !(element instanceof JRPrintImage)) {
            unless("1 SOLID #000000", out, "pen", pen(shape.getLinePen(), 1));
        }
        if (element instanceof JRBoxContainer container) box(container.getLineBox(), out);
        if (element instanceof JRPrintAnchor anchor && anchor.getAnchorName() != null) {
            attribute(out, "anchor", anchor.getAnchorName());
            unless("0", out, "level", anchor.getBookmarkLevel());
        }
        if (element instanceof JRPrintHyperlink link) link(link, out);
    }

    private static void box(JRLineBox box, StringBuilder out) {
        String pens = String.join(", ", pen(box.getTopPen(), 0), pen(box.getLeftPen(), 0), pen(box.getBottomPen(), 0),
            pen(box.getRightPen(), 0));
        unless("none, none, none, none", out, "border", pens);
        String paddings = box.getTopPadding() + " " + box.getLeftPadding() + " " + box.getBottomPadding() + " "
            + box.getRightPadding();
        unless("0 0 0 0", out, "padding", paddings);
    }

    private static void link(JRPrintHyperlink link, StringBuilder out) {
        switch (ask(link, "getHyperlinkType")) {
            case "REFERENCE" -> attribute(out, "link", "reference " + link.getHyperlinkReference());
            case "LOCALANCHOR", "LOCAL_ANCHOR" -> attribute(out, "link", "anchor " + link.getHyperlinkAnchor());
            case "LOCALPAGE", "LOCAL_PAGE" -> attribute(out, "link", "page " + link.getHyperlinkPage());
            default -> { }
        }
    }

    private static void text(JRPrintText text, StringBuilder out) {
        JRStyledText styled = text.getFullStyledText(ALL);
        String full = styled == null ? "" : styled.getText();
        Integer cut = text.getTextTruncateIndex();
        String shown = cut == null ? full : full.substring(0, cut);
        unless("SANSSERIF", out, "font", ask(text, "getFontName").replaceFirst("^DEJAVU SANS$", "SANSSERIF"));
        unless("10", out, "size", number(size(text)));
        String face = (text.isBold() ? "bold " : "") + (text.isItalic() ? "italic " : "")
            + (text.isUnderline() ? "underline " : "") + (text.isStrikeThrough() ? "strike " : "");
        unless("", out, "face", face.trim());
        unless("LEFT", out, "align", ask(text, "getHorizontalTextAlign"));
        unless("TOP", out, "valign", ask(text, "getVerticalTextAlign"));
        unless("NONE", out, "rotation", ask(text, "getRotation"));
        if (!shown.isEmpty()) attribute(out, "textHeight", number(text.getTextHeight()));
        unless("", out, "lines", lineStarts(text, shown));
        if (!text.getMarkup().equals("none")) unless("", out, "runs", runs(text, styled));
        out.append('>').append(escaped(shown));
    }

    /** Where the lines begin that no line feed of the text begins. */
    private static String lineStarts(JRPrintText text, String shown) {
        if (text.getLineBreakOffsets() == null) return "";
        StringBuilder starts = new StringBuilder();
        int at = 0;
        for (short length : text.getLineBreakOffsets()) {
            at += length;
            if (at < shown.length()) starts.append(starts.length() == 0 ? "" : " ").append(at);
        }
        return starts.toString();
    }

    /** The parts of a marked-up text that look different from the element itself. */
    private static String runs(JRPrintText text, JRStyledText styled) {
        // those that hold for less of the text win
        var inner = new ArrayList<JRStyledText.Run>(styled.getRuns());
        inner.sort(Comparator.comparingInt(run -> run.startIndex - run.endIndex));
        var bounds = new TreeSet<>(List.of(0, styled.length()));
        for (JRStyledText.Run run : styled.getRuns()) bounds.addAll(List.of(run.startIndex, run.endIndex));
        StringBuilder out = new StringBuilder();
        Integer from = null;
        for (int to : bounds) {
            if (from != null) {
                Map<Attribute, Object> looks = new HashMap<>();
                for (JRStyledText.Run run : inner) {
                    if (run.startIndex <= from && run.endIndex >= to) looks.putAll(run.attributes);
                }
                String difference = difference(text, looks);
                if (!difference.isEmpty()) {
                    out.append(out.length() == 0 ? "" : ", ").append(from).append('-').append(to).append(difference);
                }
            }
            from = to;
        }
        return out.toString();
    }

    private static String difference(JRPrintText text, Map<Attribute, Object> looks) {
        StringBuilder out = new StringBuilder();
        boolean bold = TextAttribute.WEIGHT_BOLD.equals(looks.get(TextAttribute.WEIGHT));
        boolean italic = TextAttribute.POSTURE_OBLIQUE.equals(looks.get(TextAttribute.POSTURE));
        boolean underline = TextAttribute.UNDERLINE_ON.equals(looks.get(TextAttribute.UNDERLINE));
        boolean strike = TextAttribute.STRIKETHROUGH_ON.equals(looks.get(TextAttribute.STRIKETHROUGH));
        if (bold != text.isBold()) out.append(bold ? " bold" : " light");
        if (italic != text.isItalic()) out.append(italic ? " italic" : " upright");
        if (underline != text.isUnderline()) out.append(" underline");
        if (strike != text.isStrikeThrough()) out.append(" strike");
        if (looks.get(TextAttribute.SIZE) instanceof Number size && size.floatValue() != size(text)) {
            out.append(" size ").append(number(size.floatValue()));
        }
        if (looks.get(TextAttribute.FOREGROUND) instanceof Color fore && !fore.equals(text.getForecolor())) {
            out.append(' ').append(color(fore));
        }
        if (TextAttribute.SUPERSCRIPT_SUPER.equals(looks.get(TextAttribute.SUPERSCRIPT))) out.append(" super");
        if (TextAttribute.SUPERSCRIPT_SUB.equals(looks.get(TextAttribute.SUPERSCRIPT))) out.append(" sub");
        return out.toString();
    }
}
