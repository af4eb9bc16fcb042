#pragma once

#include <string_view>

// The messages in which a terminal complains by itself.

namespace ztdecode::tool {

enum class Complaint {
    error,    // of the terminal itself
    warning,  // the same, and it goes on
    refusal,  // of a command
    download,
};

struct Reported {
    std::string_view message;
    Complaint complaint;
};

inline constexpr Reported reported[] = {
    {"anomaly", Complaint::error},
    {"bt_link_failure", Complaint::warning},
    {"download_bad_message", Complaint::download},
    {"download_checksum_bad", Complaint::download},
    {"download_failure", Complaint::download},
    {"error", Complaint::error},
    {"error_status", Complaint::error},
    {"fn_dl_cho_failure", Complaint::warning},
    {"hardware_anomaly", Complaint::error},
    {"host_error_1", Complaint::error},
    {"host_error_2", Complaint::error},
    {"illegal_command", Complaint::refusal},
    {"illegal_length", Complaint::refusal},
    {"illegal_parameter", Complaint::refusal},
    {"incident", Complaint::error},
    {"literal_string_error", Complaint::error},
    {"local_power_failure", Complaint::error},
    {"loss_of_power", Complaint::error},
    {"not_implemented", Complaint::refusal},
    {"overload_condition", Complaint::warning},
    {"segment_failure", Complaint::error},
    {"set_down", Complaint::error},
    {"smart_card_nack", Complaint::warning},
    {"software_anomaly", Complaint::error},
    {"stack_dump", Complaint::error},
    {"subdevice_down", Complaint::error},
    {"v120_protocol_error", Complaint::error},
    {"warning", Complaint::warning},
    {"wrong_state", Complaint::refusal},
};

}  // namespace ztdecode::tool
