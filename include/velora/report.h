/*
 * The reporting component as other programs call it.
 *
 * A handle is one session on one company. Handles know nothing of each other: each may live on a thread of its own. One
 * handle serves one call at a time; a second call, from another thread or from within a callback, is refused.
 *
 * Texts are UTF-8 and end in a zero byte. What a function is given stays the caller's and is not kept; what a function
 * hands out is the library's and holds until the next call on the same handle. No function throws, and none ends the
 * program.
 */
#ifndef VELORA_REPORT_H
#define VELORA_REPORT_H

#include <stddef.h>
#include <stdint.h>

#if defined(VELORA_REPORT_BUILD) && defined(__GNUC__)
#define VELORA_API __attribute__((visibility("default")))
#else
#define VELORA_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct velora_report velora_report;

/* How a call ended. */
typedef enum velora_status {
    VELORA_DELIVERED = 0,            /* done */
    VELORA_TOLD = 1,                 /* not done; the boxes and velora_last_error say why */
    VELORA_USAGE = 2,                /* the call itself is wrong: a null handle, a handle in use, a text that is none */
    VELORA_NO_DATA = 3,              /* there was nothing to put on the report */
    VELORA_DELIVERED_WITH_BOXES = 4, /* done, although boxes were shown */
    VELORA_FAULT = 5                 /* the operation raised a fault, which velora_last_error names */
} velora_status;

typedef enum velora_which_report {
    velora_eRptQuote = 0,
    velora_eRptCustomerList = 1,
    velora_eRptItemList = 2,
    velora_eRptWinLossGraph = 3,
    velora_eRptLostReasonGraph = 4,
    velora_eRptOverviewQuotes = 5,
    velora_eRptOrderChecklist = 6,
    velora_eRptPickingSlip = 7,
    velora_eRptOrderConfirmation = 8,
    velora_eRptExpireQuotes = 9,
    velora_eRptAllOrder = 10,
    velora_eRptBackOrder = 11,
    velora_eRptCustom = 22
} velora_which_report;

typedef enum velora_which_engine {
    velora_eDBNone = 0,
    velora_eDBSQLServer = 1,
    velora_eDBPervasive = 2
} velora_which_engine;

typedef enum velora_which_frame {
    velora_eFPrinter = 0,
    velora_eFRptQuote = 1,
    velora_eFRptExpiration = 2,
    velora_eFRptChecklist = 3,
    velora_eFRptConfirmation = 4,
    velora_eFRptPickingSlip = 5,
    velora_eFExport = 6,
    velora_eFEmail = 7,
    velora_eFLogFile = 8,
    velora_eFMiscOptions = 9
} velora_which_frame;

typedef enum velora_icon {
    velora_icon_information = 0,
    velora_icon_exclamation = 1,
    velora_icon_critical = 2
} velora_icon;

/* One tax authority slot of a tax group. */
typedef struct velora_vlTaxInformation {
    const char* Authority;
    const char* TaxClass;
    int32_t CascadeTax; /* 0 or 1 */
    const char* RegNumber;
    float Amount;
} velora_vlTaxInformation;

/*
 * What a handle works on and tells. Set everything to zero, then `size` to sizeof(velora_options): a member that is
 * zero or null takes what stands beside it.
 *
 * Either `folder` names an application folder; `database`, `accounting`, `company` and `engine` then take the place of
 * what its velora.ini says. Or there is no folder, and those four are given.
 */
typedef struct velora_options {
    size_t size;
    const char* folder;
    const char* database;   /* "sqlite:PATH" or "odbc:CONNECTION STRING" */
    const char* accounting; /* the same */
    const char* company;    /* company id */
    int32_t engine;         /* velora_which_engine */
    const char* user;       /* user of the session; as velora.ini says */
    const char* settings;   /* file of the user's settings; the user's own */
    const char* today;      /* "YYYY-MM-DD"; the clock's */
    const char* region;     /* "en-US"; the locale's */
    const char* resources;  /* folder with `definitions` and `fonts`; that which was installed */

    /* Called during a call, on its thread, with texts that hold as long as the callback runs. */
    void* context; /* handed to each of them */
    void (*on_box)(void* context, const char* title, const char* text, int32_t icon);
    void (*on_progress)(void* context, size_t done, size_t total); /* total is 0 while nobody knows it */
    /* The finished data of a run as one JSON object of `length` bytes:
     * {"kind", "fields": [{"name", "type", "size"}], "rows": [[...]]} */
    void (*on_pipe)(void* context, const char* json, size_t length);
} velora_options;

/* Version of the component, "0.1.0". */
VELORA_API const char* velora_version(void);

/*
 * Opens the stores. On success `*report` is a handle, to be closed by velora_close; else it is null, and
 * velora_last_error(NULL) says why. Null arguments are VELORA_USAGE.
 */
VELORA_API velora_status velora_open(const velora_options* options, velora_report** report);

/*
 * Closes the stores and frees the handle. Null is nothing; a handle in use, such as from within a callback, stays open,
 * and velora_last_error(NULL) says so. Nothing may be called on a handle that was closed.
 */
VELORA_API void velora_close(velora_report* report);

/*
 * What went wrong last on the handle, empty when the last call went well: the box, the fault with its number, or what
 * is wrong with the call. With null: what went wrong last in a call of this thread that had no handle, or was refused.
 */
VELORA_API const char* velora_last_error(const velora_report* report);

/* Number of the last fault, 0 for none. With null as above. */
VELORA_API int32_t velora_last_fault(const velora_report* report);

/*
 * Where the documents that are exported go from now on. `format` is "pdf", "html", "xls", "doc", "rtf", "txt", "xml",
 * "xlsx", "docx", "csv", or null for what the ending of the file says, else the settings; `target` is a file, a folder
 * that is there, or null for that of the settings.
 */
VELORA_API velora_status velora_set_export(velora_report* report, const char* format, const char* target);

/*
 * On which printer the documents go from now on that are neither exported nor previewed: the first whose name holds the
 * text. Null or empty takes that of the settings, else the one that the machine uses by default.
 */
VELORA_API velora_status velora_set_printer(velora_report* report, const char* name);

/* The dialect that the handle's company speaks, for the argument `engine` of the operations; 0 for null. */
VELORA_API int32_t velora_engine(velora_report* report);

/* 1 when the company works in several currencies, for the argument `multi_curr`; else, and for null, 0. */
VELORA_API int32_t velora_multi_curr(velora_report* report);

/* Full path of the document that was exported last; empty when none was. */
VELORA_API const char* velora_exported_file(velora_report* report);

/* The id of the quote of a number. VELORA_NO_DATA when there is none. */
VELORA_API velora_status velora_find_quote(velora_report* report, const char* number, int32_t* id);

/* Copies the tax slots that the last operation loaded, five of them; `*count` is the number of authorities. */
VELORA_API velora_status velora_tax_authorities(velora_report* report, velora_vlTaxInformation slots[5],
                                                int32_t* count);

/*
 * The eight operations. Flags are 0 or another number. `report_string` is the full path of a definition, or null for
 * the one that the settings and the report list name. Export wins over preview; with neither the report is printed.
 */
VELORA_API velora_status velora_Show_Printers(velora_report* report, int32_t win_xp, int32_t engine, int32_t frame);
VELORA_API velora_status velora_Open_Reports(velora_report* report, int32_t win_xp, int32_t engine,
                                             int32_t which_report, int32_t multi_curr, const char* sess_user,
                                             int32_t quote_id, const char* cust_group, int32_t own_quotes,
                                             int32_t email_it, int32_t show_cust);
VELORA_API velora_status velora_Print_CurrentQuote(velora_report* report, int32_t engine, int32_t multi_curr,
                                                   int32_t quote_id, const char* cust_group, int32_t show_cust,
                                                   const char* report_string, int32_t export_it, int32_t preview);
VELORA_API velora_status velora_Print_OrderChecklist(velora_report* report, int32_t engine, int32_t quote_id,
                                                     const char* report_string, int32_t export_it, int32_t preview);
VELORA_API velora_status velora_Print_OrderConfirmation(velora_report* report, int32_t engine, int32_t quote_id,
                                                        const char* report_string, int32_t export_it, int32_t preview);
VELORA_API velora_status velora_Show_Emailer(velora_report* report, int32_t win_xp, int32_t engine);
VELORA_API velora_status velora_Print_OrderPickingSlip(velora_report* report, int32_t engine, int32_t quote_id,
                                                       const char* report_string, int32_t export_it, int32_t preview,
                                                       int32_t quant_as_int);
VELORA_API velora_status velora_Print_QuoteExpiration(velora_report* report, int32_t engine, const char* report_string,
                                                      int32_t export_it, int32_t preview);

#ifdef __cplusplus
}
#endif

#endif
