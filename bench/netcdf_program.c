/* Does a line of work as a plain program on the netCDF C library would: ANDI to pair and back, with
 * the same variables and files of the same size. */
#include <netcdf.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum {
    sliceHeadSize = 2048,
    reportHeadSize = 352,
    peakSize = 114,
    peakEntrySize = 2,
    columnCount = 7
};

static const char* const columns[columnCount] = {
    "peak_retention_time", "peak_start_time", "peak_end_time",    "peak_area",
    "peak_height",         "peak_amount",     "peak_area_percent"};
static const size_t columnOffsets[columnCount] = {4, 16, 20, 8, 12, 78, 24};

static void need(int isGood, const char* what) {
    if (!isGood) {
        fprintf(stderr, "%s failed\n", what);
        exit(1);
    }
}

static void* block(size_t size) {
    void* bytes = calloc(1, size + 1);
    need(bytes != NULL, "memory");
    return bytes;
}

static void writeFile(const char* path, const char* head, size_t headSize, const char* body,
                      size_t bodySize) {
    FILE* file = fopen(path, "wb");
    need(file != NULL && fwrite(head, 1, headSize, file) == headSize &&
             fwrite(body, 1, bodySize, file) == bodySize && fclose(file) == 0,
         path);
}

static void readFile(FILE* file, char* target, size_t size) {
    need(fread(target, 1, size, file) == size, "read");
}

static void readAttributes(int andi) {
    int count = 0;
    need(nc_inq_natts(andi, &count) == NC_NOERR, "attributes");
    for (int i = 0; i < count; ++i) {
        char name[NC_MAX_NAME + 1];
        nc_type type = NC_NAT;
        size_t length = 0;
        need(nc_inq_attname(andi, NC_GLOBAL, i, name) == NC_NOERR &&
                 nc_inq_att(andi, NC_GLOBAL, name, &type, &length) == NC_NOERR,
             "attribute");
        if (type == NC_CHAR) {
            char* text = block(length);
            need(nc_get_att_text(andi, NC_GLOBAL, name, text) == NC_NOERR, name);
            free(text);
        }
    }
}

static float* readVariable(int andi, const char* name, size_t* count) {
    int variable = 0;
    int dimension = 0;
    need(nc_inq_varid(andi, name, &variable) == NC_NOERR &&
             nc_inq_vardimid(andi, variable, &dimension) == NC_NOERR &&
             nc_inq_dimlen(andi, dimension, count) == NC_NOERR,
         name);
    float* values = block(*count * sizeof *values);
    need(nc_get_var_float(andi, variable, values) == NC_NOERR, name);
    return values;
}

static char* readPeaks(int andi, size_t* peaks) {
    char* records = NULL;
    for (size_t column = 0; column < columnCount; ++column) {
        float* values = readVariable(andi, columns[column], peaks);
        records = records == NULL ? block(*peaks * (peakSize + peakEntrySize)) : records;
        for (size_t i = 0; i < *peaks; ++i) {
            memcpy(records + *peaks * peakEntrySize + i * peakSize + columnOffsets[column],
                   &values[i], sizeof *values);
        }
        free(values);
    }
    return records;
}

static void toPair(const char* andiPath, const char* slicePath, const char* reportPath,
                   int hasPeaks) {
    int andi = 0;
    size_t points = 0;
    size_t peaks = 0;
    need(nc_open(andiPath, NC_NOWRITE, &andi) == NC_NOERR, andiPath);
    readAttributes(andi);
    float* signal = readVariable(andi, "ordinate_values", &points);
    char* records = hasPeaks ? readPeaks(andi, &peaks) : NULL;
    nc_close(andi);

    char head[sliceHeadSize] = {0};
    float extremes[2] = {signal[0], signal[0]};
    for (size_t i = 0; i < points; ++i) {
        extremes[0] = signal[i] < extremes[0] ? signal[i] : extremes[0];
        extremes[1] = signal[i] > extremes[1] ? signal[i] : extremes[1];
    }
    memcpy(head + 4, extremes, sizeof extremes);
    writeFile(slicePath, head, sliceHeadSize, (const char*)signal, points * sizeof *signal);
    writeFile(reportPath, head, reportHeadSize, records == NULL ? head : records,
              peaks * (peakSize + peakEntrySize));
    free(signal);
    free(records);
}

static void addTexts(int andi) {
    static const char* const names[] = {"dataset_completeness",
                                        "aia_template_revision",
                                        "netcdf_revision",
                                        "languages",
                                        "injection_date_time_stamp",
                                        "HP_injection_time",
                                        "experiment_title",
                                        "operator_name",
                                        "separation_experiment_type",
                                        "source_file_reference",
                                        "sample_name",
                                        "sample_id",
                                        "detector_unit",
                                        "detection_method_name",
                                        "detector_name",
                                        "retention_unit",
                                        "error_log"};
    for (size_t i = 0; i < sizeof names / sizeof *names; ++i) {
        need(nc_put_att_text(andi, NC_GLOBAL, names[i], 16, "a text of 16 byt") == NC_NOERR,
             names[i]);
    }
}

struct Pair {
    size_t points;
    size_t peaks;
    float* signal;
    char* records;
};

static struct Pair readPair(const char* slicePath, const char* reportPath) {
    char head[sliceHeadSize];
    unsigned points = 0;
    short peaks = 0;
    FILE* slice = fopen(slicePath, "rb");
    FILE* report = fopen(reportPath, "rb");
    need(slice != NULL && report != NULL, slicePath);
    readFile(slice, head, sliceHeadSize);
    memcpy(&points, head, sizeof points);
    struct Pair pair = {.points = points, .signal = block(points * sizeof(float))};
    readFile(slice, (char*)pair.signal, points * sizeof(float));
    readFile(report, head, reportHeadSize);
    memcpy(&peaks, head + reportHeadSize - sizeof peaks, sizeof peaks);
    pair.peaks = (size_t)peaks;
    pair.records = block(pair.peaks * (peakSize + peakEntrySize));
    readFile(report, pair.records, pair.peaks * (peakSize + peakEntrySize));
    fclose(slice);
    fclose(report);
    return pair;
}

enum { scalarCount = 5 };
static const char* const scalars[scalarCount] = {"detector_maximum_value", "detector_minimum_value",
                                                 "actual_run_time_length", "actual_delay_time",
                                                 "actual_sampling_interval"};

struct Variables {
    int scalars[scalarCount];
    int signal;
    int columns[columnCount];
};

static int defineVector(int andi, const char* name, int dimension) {
    int variable = 0;
    need(nc_def_var(andi, name, NC_FLOAT, 1, &dimension, &variable) == NC_NOERR, name);
    return variable;
}

static struct Variables defineVariables(int andi, const struct Pair* pair) {
    struct Variables variables = {{0}, 0, {0}};
    int dimension = 0;
    for (int i = 0; i < scalarCount; ++i) {
        need(nc_def_var(andi, scalars[i], NC_FLOAT, 0, NULL, &variables.scalars[i]) == NC_NOERR,
             scalars[i]);
    }
    need(nc_def_dim(andi, "point_number", pair->points, &dimension) == NC_NOERR, "point_number");
    variables.signal = defineVector(andi, "ordinate_values", dimension);
    if (pair->peaks > 0) {
        need(nc_def_dim(andi, "peak_number", pair->peaks, &dimension) == NC_NOERR, "peak_number");
        for (int i = 0; i < columnCount; ++i) {
            variables.columns[i] = defineVector(andi, columns[i], dimension);
        }
    }
    return variables;
}

static void putColumns(int andi, const struct Variables* variables, const struct Pair* pair) {
    float* values = block(pair->peaks * sizeof *values);
    const char* firstRecord = pair->records + pair->peaks * peakEntrySize;
    for (size_t column = 0; pair->peaks > 0 && column < columnCount; ++column) {
        for (size_t i = 0; i < pair->peaks; ++i) {
            memcpy(&values[i], firstRecord + i * peakSize + columnOffsets[column], sizeof *values);
        }
        need(nc_put_var_float(andi, variables->columns[column], values) == NC_NOERR,
             columns[column]);
    }
    free(values);
}

static void toAndi(const char* slicePath, const char* reportPath, const char* andiPath) {
    const float value = 1.5F;
    int andi = 0;
    int oldFill = 0;
    struct Pair pair = readPair(slicePath, reportPath);
    need(nc_create(andiPath, NC_CLOBBER, &andi) == NC_NOERR &&
             nc_set_fill(andi, NC_NOFILL, &oldFill) == NC_NOERR,
         andiPath);
    addTexts(andi);
    const struct Variables variables = defineVariables(andi, &pair);
    need(nc_enddef(andi) == NC_NOERR, "enddef");
    for (int i = 0; i < scalarCount; ++i) {
        need(nc_put_var_float(andi, variables.scalars[i], &value) == NC_NOERR, scalars[i]);
    }
    need(nc_put_var_float(andi, variables.signal, pair.signal) == NC_NOERR, "ordinate_values");
    putColumns(andi, &variables, &pair);
    need(nc_close(andi) == NC_NOERR, andiPath);
    free(pair.records);
    free(pair.signal);
}

/* The words are those of work.h: DIRECTION STEM CONVERSIONS CHANNELS POINTS PEAKS ... */
int main(int argc, char** argv) {
    need(argc > 6, "command line");
    const long conversions = strtol(argv[3], NULL, 10);
    const int hasPeaks = strtol(argv[6], NULL, 10) > 0;
    const size_t size = strlen(argv[2]) + 32;
    char* andi = block(size);
    char* slice = block(size);
    char* report = block(size);
    for (long i = 0; i < conversions; ++i) {
        snprintf(andi, size, "%s-%ld.cdf", argv[2], i);
        snprintf(slice, size, "%s-%ld.sli", argv[2], i);
        snprintf(report, size, "%s-%ld.rpt", argv[2], i);
        if (strcmp(argv[1], "to-pair") == 0) {
            toPair(andi, slice, report, hasPeaks);
        } else {
            toAndi(slice, report, andi);
        }
    }
    free(andi);
    free(slice);
    free(report);
    return 0;
}
