#include "csvreader.h"

#include "csvtablebuilder.h"
#include "csvtokenizer.h"

CsvResult CsvReader::read(QIODevice &device, const std::atomic<bool> &cancel,
                          const Progress &progress)
{
    CsvResult result;
    CsvTokenizer tokenizer(device);
    CsvTableBuilder builder;
    qint64 bytesReported = 0;
    while (tokenizer.next()) {
        if (tokenizer.bytesRead() != bytesReported) {
            bytesReported = tokenizer.bytesRead();
            if (progress) {
                progress(bytesReported);
            }
        }
        if (cancel) {
            result.cancelled = true;
            return result;
        }
        if (!builder.addRow(tokenizer.row())) {
            result.error = builder.error();
            return result;
        }
    }
    if (tokenizer.failed()) {
        result.error = tokenizer.error();
        return result;
    }
    result.table = builder.finish(tokenizer.line());
    result.error = builder.error();
    return result;
}
