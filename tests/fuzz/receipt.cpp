// The receipt of a run: whatever its file contains is either rejected or written again byte for byte as it was.

#include "fuzz.h"
#include "state/receipts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes = vesk::testing::bytesOf(data, size);
    for (const std::string& text : {bytes, "vesk receipt 1\nfolder -\n" + bytes + "\n"}) {
        if (const auto receipt = vesk::decodeReceipt(text)) {
            const std::string written = vesk::encodeReceipt(*receipt);
            VESK_HOLDS(vesk::decodeReceipt(written) == receipt);
            // Leading zeros of a number are dropped.
            VESK_HOLDS(written.size() <= text.size());
        }
    }
    return 0;
}
