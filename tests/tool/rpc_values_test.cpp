// The forms of values, both ways.
#include <random>

#include "rpc_client.h"

namespace tool_test {
namespace {

struct Form {
    std::string sent;
    std::string answered;
};

// A member that takes a Variant answers it among its arguments as it came.
std::string round_trip(RpcClient& rpc, const std::string& value) {
    const std::string answer = rpc.call("aChar.NullStr", '[' + value + ']');
    const std::string before = ",\"args\":[";
    const std::size_t from = answer.find(before);
    const std::size_t to = answer.rfind("],\"boxes\":[]}}");
    return from == std::string::npos || to == std::string::npos
               ? answer
               : answer.substr(from + before.size(), to - from - before.size());
}

TEST(RpcValues, EveryFormIsReadAndAnsweredInItsOneKeyForm) {
    const Form forms[] = {
        {"null", R"({"Null":null})"},
        {R"({"Null":null})", R"({"Null":null})"},
        {R"({"Empty":null})", R"({"Empty":null})"},
        {R"({"Missing":null})", R"({"Missing":null})"},
        {"true", R"({"Boolean":-1})"},
        {"false", R"({"Boolean":0})"},
        {R"({"Boolean":1})", R"({"Boolean":1})"},
        {R"({"Boolean":-32768})", R"({"Boolean":-32768})"},
        {"5", R"({"Long":5})"},
        {"-0", R"({"Long":0})"},
        {"2147483647", R"({"Long":2147483647})"},
        {"-2147483648", R"({"Long":-2147483648})"},
        {"2147483648", R"({"Double":2147483648.0})"},
        {"-2147483649", R"({"Double":-2147483649.0})"},
        {"123456789012345678901234567890", R"({"Double":1.2345678901234568e+29})"},
        {R"({"Long":-7})", R"({"Long":-7})"},
        {R"({"Integer":-32768})", R"({"Integer":-32768})"},
        {R"({"Integer":32767})", R"({"Integer":32767})"},
        {R"({"Byte":255})", R"({"Byte":255})"},
        {"1.0", R"({"Double":1.0})"},
        {"-0.0", R"({"Double":-0.0})"},
        {"1e2", R"({"Double":100.0})"},
        {"1E-2", R"({"Double":0.01})"},
        {"0.1", R"({"Double":0.1})"},
        {R"({"Double":5})", R"({"Double":5.0})"},
        {R"({"Double":1e999})", R"({"Double":1e999})"},
        {"-1e999", R"({"Double":-1e999})"},
        {R"({"Double":5e-324})", R"({"Double":5e-324})"},
        {R"({"Double":1.7976931348623157e308})", R"({"Double":1.7976931348623157e+308})"},
        {R"({"Single":0.1})", R"({"Single":0.1})"},
        {R"({"Single":16777217})", R"({"Single":16777216.0})"},
        {R"({"Single":1e999})", R"({"Single":1e999})"},
        {R"({"Single":3.4028235e38})", R"({"Single":3.4028235e+38})"},
        {R"({"Currency":"12.5"})", R"({"Currency":"12.5000"})"},
        {R"({"Currency":"0"})", R"({"Currency":"0.0000"})"},
        {R"({"Currency":"-0.0001"})", R"({"Currency":"-0.0001"})"},
        {R"({"Currency":"922337203685477.5807"})", R"({"Currency":"922337203685477.5807"})"},
        {R"({"Currency":"-922337203685477.5808"})", R"({"Currency":"-922337203685477.5808"})"},
        {R"({"Decimal":"1.005"})", R"({"Decimal":"1.005"})"},
        {R"({"Decimal":"1.5000"})", R"({"Decimal":"1.5000"})"},
        {R"({"Decimal":"-0.00"})", R"({"Decimal":"-0.00"})"},
        {R"({"Decimal":"79228162514264337593543950335"})",
         R"({"Decimal":"79228162514264337593543950335"})"},
        {R"({"Decimal":"-7.9228162514264337593543950335"})",
         R"({"Decimal":"-7.9228162514264337593543950335"})"},
        {R"({"Date":45429.5})", R"({"Date":45429.5})"},
        {R"({"Date":45429})", R"({"Date":45429.0})"},
        {R"({"Date":"2024-05-17"})", R"({"Date":45429.0})"},
        {R"({"Date":"2024-05-17T12:00:00"})", R"({"Date":45429.5})"},
        {R"({"Date":"1899-12-29T06:00:00"})", R"({"Date":-1.25})"},
        {R"({"Date":"0100-01-01"})", R"({"Date":-657434.0})"},
        {R"({"Date":"9999-12-31"})", R"({"Date":2958465.0})"},
        {R"("text")", R"({"String":"text"})"},
        {R"({"String":""})", R"({"String":""})"},
        {R"({"Error":5})", R"({"Error":5})"},
        {R"({"Error":-2147352573})", R"({"Error":-2147352573})"},
        {R"({"Error":2147614723})", R"({"Error":-2147352573})"},
        {R"({"Error":-2147352572})", R"({"Missing":null})"},
        {R"({"Object":0})", R"({"Object":0})"},
    };
    RpcClient rpc;
    for (const Form& form : forms) {
        EXPECT_EQ(form.answered, round_trip(rpc, form.sent)) << form.sent;
        EXPECT_EQ(form.answered, round_trip(rpc, form.answered)) << "read back";
    }
}

TEST(RpcValues, TextsTravelWhole) {
    const Form forms[] = {
        {R"("Zażółć")", "\"Zażółć\""},
        {R"("\u017B\u00F3\u0142w")", "\"Żółw\""},
        {R"("\"\\\/\b\f\n\r\t")", R"("\"\\/\u0008\u000c\n\r\t")"},
        {R"("a\u0000b")", R"("a\u0000b")"},
        {R"("\u001f\u007f")", "\"\\u001f\x7f\""},
        {R"("\uD83D\uDE00")", "\"😀\""},
        {"\"😀\"", "\"😀\""},
        {R"("\uD83D")", R"("\ud83d")"},
        {R"("\uDE00\uD83D")", R"("\ude00\ud83d")"},
        {R"("\uD83D\uD83D\uDE00\uDE00")", "\"\\ud83d😀\\ude00\""},
        {R"("\uD83Dx")", R"("\ud83dx")"},
        {R"("\uD83D\u0041")", R"("\ud83dA")"},
        {R"("\udfff\ud800")", R"("\udfff\ud800")"},
        {"\"\uFDD0\"", "\"\uFDD0\""},
        {R"("\uFDD0")", "\"\uFDD0\""},
        {R"("\uFDD0\uE000")", "\"\uFDD0\uE000\""},
        {R"("\uFDD0\uD83D\uFDD0")", "\"\uFDD0\\ud83d\uFDD0\""},
        {R"("\uFDD0+")", "\"\uFDD0+\""},
        {R"("\uFDD0-")", "\"\uFDD0-\""},
        {"\"\uFDD0\uFDD0+\"", "\"\uFDD0\uFDD0+\""},
        {"\"\uE000\uFFFD\uFFFE\uFFFF\"", "\"\uE000\uFFFD\uFFFE\uFFFF\""},
        {R"("1e999")", R"("1e999")"},
        {R"("[{\"1e999\":[")", R"("[{\"1e999\":[")"},
    };
    RpcClient rpc;
    for (const Form& form : forms) {
        EXPECT_EQ(R"({"String":)" + form.answered + '}', round_trip(rpc, form.sent)) << form.sent;
        EXPECT_EQ(R"({"String":)" + form.answered + '}', round_trip(rpc, form.answered))
            << "read back";
    }
}

TEST(RpcValues, EveryCodeUnitTravels) {
    RpcClient rpc;
    for (unsigned unit = 0; unit < 0x10000; unit += 64) {
        std::string text;
        for (unsigned i = unit; i < unit + 64; ++i) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", i);
            text += escape + std::string("x");  // apart, so that no two units make a pair
        }
        const std::string once = round_trip(rpc, '"' + text + '"');
        ASSERT_TRUE(once.starts_with(R"({"String":")")) << once;
        EXPECT_EQ(once, round_trip(rpc, once)) << unit;
        EXPECT_EQ(R"({"Boolean":-1})",
                  rpc.value("value.IsNumericText", "[128]"));  // the session is in step
        const std::string length = rpc.value("aChar.StrDoPrawej", "[" + once + ",128]");
        EXPECT_EQ(length, once) << "128 units have come in";
    }
}

TEST(RpcValues, RandomDoublesReadBack) {
    RpcClient rpc;
    std::mt19937_64 random(20240517);
    for (int i = 0; i < 2000; ++i) {
        const auto number = std::bit_cast<double>(random());
        if (!std::isfinite(number)) {
            continue;
        }
        char text[40];
        std::snprintf(text, sizeof text, "%.17g", number);
        const std::string answer = round_trip(rpc, std::string(R"({"Double":)") + text + '}');
        const std::string digits = answer.substr(10, answer.size() - 11);
        EXPECT_EQ(number, std::strtod(digits.c_str(), nullptr)) << answer;
    }
}

TEST(RpcValues, RandomSinglesReadBack) {
    RpcClient rpc;
    std::mt19937 random(20240517);
    for (int i = 0; i < 2000; ++i) {
        const auto number = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (!std::isfinite(number)) {
            continue;
        }
        char text[40];
        std::snprintf(text, sizeof text, "%.9g", static_cast<double>(number));
        const std::string answer = round_trip(rpc, std::string(R"({"Single":)") + text + '}');
        const std::string digits = answer.substr(10, answer.size() - 11);
        EXPECT_EQ(number, std::strtof(digits.c_str(), nullptr)) << answer;
    }
}

TEST(RpcValues, WhatIsNoFormIsRefused) {
    const std::string wrong[] = {
        "[]",
        "[1]",
        "{}",
        R"({"Long":1,"Integer":1})",
        R"({"long":1})",
        R"({"Text":"a"})",
        R"({"Null":0})",
        R"({"Empty":""})",
        R"({"Missing":1})",
        R"({"Boolean":true})",
        R"({"Boolean":32768})",
        R"({"Byte":256})",
        R"({"Byte":-1})",
        R"({"Integer":40000})",
        R"({"Integer":1.0})",
        R"({"Integer":"1"})",
        R"({"Long":2147483648})",
        R"({"Long":1e3})",
        R"({"Long":null})",
        R"({"Single":1e39})",
        R"({"Single":"1"})",
        R"({"Double":"1"})",
        R"({"Double":null})",
        R"({"Currency":12.5})",
        R"({"Currency":""})",
        R"({"Currency":"-"})",
        R"({"Currency":"."})",
        R"({"Currency":"1."})",
        R"({"Currency":".5"})",
        R"({"Currency":"+1"})",
        R"({"Currency":" 1"})",
        R"({"Currency":"1,5"})",
        R"({"Currency":"1e2"})",
        R"({"Currency":"1.2.3"})",
        R"({"Currency":"--1"})",
        R"({"Currency":"1.00005"})",
        R"({"Currency":"922337203685477.5808"})",
        R"({"Currency":"-922337203685477.5809"})",
        R"({"Currency":"9999999999999999999999"})",
        R"({"Decimal":1.5})",
        R"({"Decimal":""})",
        R"({"Decimal":"abc"})",
        R"({"Decimal":"79228162514264337593543950336"})",
        R"({"Decimal":"0.12345678901234567890123456789"})",
        R"({"Date":"2024-02-30"})",
        R"({"Date":"2024-13-01"})",
        R"({"Date":"2024-00-01"})",
        R"({"Date":"2024-01-00"})",
        R"({"Date":"0099-12-31"})",
        R"({"Date":"17-05-2024"})",
        R"({"Date":"2024-05-17 12:00:00"})",
        R"({"Date":"2024-05-17T24:00:00"})",
        R"({"Date":"2024-05-17T12:60:00"})",
        R"({"Date":"2024-05-17T12:00:60"})",
        R"({"Date":"2024-05-17T12:00"})",
        R"({"Date":"2O24-05-17"})",
        R"({"Date":""})",
        R"({"Date":null})",
        R"({"String":5})",
        R"({"String":1e999})",
        R"({"Error":"5"})",
        R"({"Error":4294967296})",
        R"({"Error":-2147483649})",
        R"({"Object":"1"})",
        R"({"Object":1.0})",
        R"({"Object":99999999999999999999})",
    };
    RpcClient rpc;
    for (const std::string& value : wrong) {
        EXPECT_EQ(-32602, rpc.code("aChar.NullStr", '[' + value + ']')) << value;
    }
    // The form of an object that there is not.
    EXPECT_EQ(-32601, rpc.code("aChar.NullStr", R"([{"Object":1}])"));
    EXPECT_EQ(-32601, rpc.code("aChar.NullStr", R"([{"Object":-1}])"));
}

TEST(RpcValues, ResultsOfEverySubtype) {
    const struct {
        std::string method, params, value;
    } calls[] = {
        {"value.ToInteger16", R"(["12,5"])", R"({"Integer":12})"},
        {"value.ToLong", R"([{"Double":2.5}])", R"({"Long":2})"},
        {"value.ToCurrency", R"(["1,13"])", R"({"Currency":"1.1300"})"},
        {"value.ToText", R"([{"Currency":"12.5"}])", R"({"String":"12,5"})"},
        {"value.ToDate", R"(["2024-05-17"])", R"({"Date":45429.0})"},
        {"value.ValPrefix", R"(["0.1"])", R"({"Double":0.1})"},
        {"value.ValPrefix", R"(["1e400"])", R"({"Double":1e999})"},
        {"value.IsNullValue", "[null]", R"({"Boolean":-1})"},
        {"value.IsDateValue", R"(["2024-05-17"])", R"({"Boolean":-1})"},
        {"value.MakeDate", "[2024,0,15]", R"({"Date":45275.0})"},
        {"value.FormatMask", R"([2.675,"0.00"])", R"({"String":"2,68"})"},
        {"value.RoundHalfEven", R"([{"Decimal":"2.3450"},2])", R"({"Decimal":"2.34"})"},
        {"value.RoundHalfEven", R"([{"Single":2.5},0])", R"({"Single":2.0})"},
        {"value.RoundHalfEven", R"([{"Byte":7},0])", R"({"Byte":7})"},
        {"value.RoundHalfEven", "[null,0]", R"({"Null":null})"},
        {"aLiczby.VarValVar", R"([{"Empty":null}])", R"({"Empty":null})"},
        {"aLiczby.VarValVar", "[null]", R"({"Integer":0})"},
    };
    RpcClient rpc;
    for (const auto& call : calls) {
        EXPECT_EQ(call.value, rpc.value(call.method, call.params)) << call.method << call.params;
    }
}

}  // namespace
}  // namespace tool_test
