/*
 * Prints one quote of an application folder to a PDF file.
 *
 *     cc quote.c $(pkg-config --cflags --libs velora-report) -o quote
 *     ./quote acme Q-10052 offer.pdf
 */
#include <stdio.h>
#include <string.h>
#include <velora/report.h>

static void on_box(void* context, const char* title, const char* text, int32_t icon)
{
    (void)context;
    (void)icon;
    fprintf(stderr, "%s\n%s\n", title, text);
}

/* A program of its own would read the JSON; this one counts its lines, of which each is a row. */
static void on_pipe(void* context, const char* json, size_t length)
{
    size_t* rows = context;
    for (size_t at = 0; at < length; ++at) *rows += json[at] == '\n';
}

int main(int argc, char** argv)
{
    if (argc != 4) {
        fprintf(stderr, "usage: quote FOLDER NUMBER FILE\n");
        return VELORA_USAGE;
    }
    size_t rows = 0;
    velora_options options;
    memset(&options, 0, sizeof options);
    options.size = sizeof options;
    options.folder = argv[1];
    options.context = &rows;
    options.on_box = on_box;
    options.on_pipe = on_pipe;

    velora_report* report = NULL;
    velora_status status = velora_open(&options, &report);
    if (status != VELORA_DELIVERED) {
        fprintf(stderr, "%s\n", velora_last_error(NULL));
        return status;
    }
    int32_t id = 0;
    status = velora_find_quote(report, argv[2], &id);
    if (status == VELORA_DELIVERED) status = velora_set_export(report, NULL, argv[3]);
    if (status == VELORA_DELIVERED) {
        status =
            velora_Print_CurrentQuote(report, velora_engine(report), velora_multi_curr(report), id, "", 0, NULL, 1, 0);
    }
    if (status == VELORA_DELIVERED || status == VELORA_DELIVERED_WITH_BOXES) {
        printf("%s: %zu rows\n", velora_exported_file(report), rows);
    } else {
        fprintf(stderr, "%s: %s\n", argv[2], velora_last_error(report));
    }
    velora_close(report);
    return status;
}
