import java.io.File;
import java.io.FileInputStream;
import java.io.FileOutputStream;
import java.io.OutputStream;
import java.lang.management.ManagementFactory;
import java.util.Arrays;
import java.util.HashMap;
import java.util.Locale;

import com.sun.management.OperatingSystemMXBean;
import net.sf.jasperreports.engine.JRDataSource;
import net.sf.jasperreports.engine.JRException;
import net.sf.jasperreports.engine.JRField;
import net.sf.jasperreports.engine.JasperCompileManager;
import net.sf.jasperreports.engine.JasperFillManager;
import net.sf.jasperreports.engine.JasperPrint;
import net.sf.jasperreports.engine.JasperReport;
import net.sf.jasperreports.engine.util.JRLoader;
import net.sf.jasperreports.export.SimpleExporterInput;
import net.sf.jasperreports.export.SimpleOutputStreamExporterOutput;
import net.sf.jasperreports.pdf.JRPdfExporter;
import net.sf.jasperreports.pdf.SimplePdfReportConfiguration;

/** Times the Java engine of the same definition format on the definitions and rows of the engine's own benchmark. */
public final class EnginePeer {
    private static final int ROWS_PER_PAGE = 25;
    /** Its speed rises no more after some 2,000 pages. */
    private static final int PAGES_TO_WARM_UP = 5000;
    /** Counts the time of every thread: the collector's and the compiler's too. */
    private static final OperatingSystemMXBean PROCESS =
        (OperatingSystemMXBean) ManagementFactory.getOperatingSystemMXBean();

    /** Rows of texts: field COLUMN_n of row r is "text n of row r". */
    private static final class Rows implements JRDataSource {
        private final long count;
        private long row = -1;

        Rows(long count) {
            this.count = count;
        }

        @Override
        public boolean next() {
            return ++row < count;
        }

        @Override
        public Object getFieldValue(JRField field) {
            return "text " + field.getName().substring("COLUMN_".length()) + " of row " + row;
        }
    }

    private interface Round {
        int pages() throws Exception;
    }

    public static void main(String[] arguments) throws Exception {
        if (arguments.length == 5 && arguments[0].equals("warm")) {
            warm(arguments[1], new File(arguments[2]), Integer.parseInt(arguments[3]), Integer.parseInt(arguments[4]));
        } else if (arguments.length == 3 && arguments[0].equals("page")) {
            page(arguments[1], new File(arguments[2]));
        } else if (arguments.length == 3 && arguments[0].equals("compile")) {
            JasperCompileManager.compileReportToFile(arguments[1], arguments[2]);
        } else {
            System.err.println("usage: EnginePeer warm DEFINITION PDF PAGES ROUNDS | page DEFINITION PDF"
                + " | compile DEFINITION COMPILED");
            System.exit(2);
        }
    }

    private static void warm(String definition, File pdf, int pages, int rounds) throws Exception {
        JasperReport report = JasperCompileManager.compileReport(definition);
        measure("fill", rounds, () -> filled(report, pages).getPages().size());
        measure("pdf", rounds, () -> exported(filled(report, pages), pdf));
        print("pdf_bytes", pdf.length());
    }

    /** One page from a definition as drawn, or compiled when its name ends so; the caller takes the time. */
    private static void page(String definition, File pdf) throws Exception {
        JasperReport report;
        if (definition.endsWith(".compiled")) {
            try (FileInputStream compiled = new FileInputStream(definition)) {
                report = (JasperReport) JRLoader.loadObject(compiled);
            }
        } else {
            report = JasperCompileManager.compileReport(definition);
        }
        exported(filled(report, 1), pdf);
    }

    private static JasperPrint filled(JasperReport report, int pages) throws JRException {
        return JasperFillManager.fillReport(report, new HashMap<>(), new Rows((long) pages * ROWS_PER_PAGE));
    }

    private static int exported(JasperPrint print, File pdf) throws Exception {
        try (OutputStream out = new FileOutputStream(pdf)) {
            JRPdfExporter exporter = new JRPdfExporter();
            exporter.setExporterInput(new SimpleExporterInput(print));
            exporter.setExporterOutput(new SimpleOutputStreamExporterOutput(out));
            exporter.setConfiguration(new SimplePdfReportConfiguration());
            exporter.exportReport();
        }
        return print.getPages().size();
    }

    private static void measure(String name, int rounds, Round round) throws Exception {
        int warmedUp = 0;
        while (warmedUp < PAGES_TO_WARM_UP) {
            warmedUp += round.pages();
        }
        double[] rates = new double[rounds];
        double[] processorRates = new double[rounds];
        for (int i = 0; i < rounds; ++i) {
            long start = System.nanoTime();
            long processorStart = PROCESS.getProcessCpuTime();
            int pages = round.pages();
            double processorSeconds = (PROCESS.getProcessCpuTime() - processorStart) / 1e9;
            double seconds = (System.nanoTime() - start) / 1e9;
            rates[i] = pages / seconds;
            processorRates[i] = pages / processorSeconds;
        }
        print(name + "_pages_per_second", median(rates));
        print(name + "_pages_per_cpu_second", median(processorRates));
    }

    private static double median(double[] figures) {
        Arrays.sort(figures);
        return figures[figures.length / 2];
    }

    private static void print(String name, double figure) {
        System.out.printf(Locale.ROOT, "%s %.1f%n", name, figure);
    }
}
