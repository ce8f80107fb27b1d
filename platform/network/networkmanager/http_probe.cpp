#include "http_probe.h"

#include <Ecore.h>
#include <curl/curl.h>

#include <atomic>
#include <mutex>
#include <utility>

#include "connection_manager.h"
#include "platform_log.h"

namespace network {
namespace {

// Shared by the question, on the main loop, and the worker. The answer belongs to the main loop.
struct HttpJob {
    HttpRequest request;
    Answer answer;
    std::atomic<bool> withdrawn = false;
    int result = CONNECTION_ERROR_OPERATION_FAILED;
    std::string problem;
};
using SharedJob = std::shared_ptr<HttpJob>;

struct CurlResult {
    CURLcode code;
    int result;
};
constexpr CurlResult kCurlResults[] = {
    {CURLE_COULDNT_RESOLVE_HOST, CONNECTION_ERROR_OFFLINE},
    {CURLE_COULDNT_CONNECT, CONNECTION_ERROR_OFFLINE},
    {CURLE_OPERATION_TIMEDOUT, CONNECTION_ERROR_NO_REPLY},
    {CURLE_URL_MALFORMAT, CONNECTION_ERROR_INVALID_PARAMETER},
    {CURLE_UNSUPPORTED_PROTOCOL, CONNECTION_ERROR_INVALID_PARAMETER},
};

int resultOf(CURLcode code) {
    for (const CurlResult& row : kCurlResults) {
        if (row.code == code) return row.result;
    }
    return CONNECTION_ERROR_OPERATION_FAILED;
}

std::size_t discard(const char*, std::size_t size, std::size_t count, void*) {
    return size * count;
}

int stopWhenWithdrawn(void* job, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return static_cast<HttpJob*>(job)->withdrawn ? 1 : 0;
}

void configure(CURL* curl, HttpJob& job) {
    const std::string interfaceOption = "if!" + job.request.interfaceName;
    curl_easy_setopt(curl, CURLOPT_URL, job.request.url.c_str());
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl, CURLOPT_IPRESOLVE, CURL_IPRESOLVE_V6);
    curl_easy_setopt(curl, CURLOPT_PROXY, "");
    curl_easy_setopt(curl, CURLOPT_INTERFACE, interfaceOption.c_str());
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, static_cast<long>(job.request.limitSeconds * 1000));
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, &discard);
    curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, &stopWhenWithdrawn);
    curl_easy_setopt(curl, CURLOPT_XFERINFODATA, &job);
}

void perform(HttpJob& job) {
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> curl(curl_easy_init(), &curl_easy_cleanup);
    if (curl == nullptr) return;
    configure(curl.get(), job);
    const CURLcode code = curl_easy_perform(curl.get());
    if (code != CURLE_OK) {
        job.problem = curl_easy_strerror(code);
        job.result = resultOf(code);
        return;
    }
    long status = 0;
    curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &status);
    job.result = status / 100 == 2 ? CONNECTION_ERROR_NONE : CONNECTION_ERROR_OFFLINE;
    if (job.result != CONNECTION_ERROR_NONE) job.problem = "HTTP status " + std::to_string(status);
}

// Runs on the main loop once the worker is through, or has been cancelled before it began.
void finish(void* data, Ecore_Thread*) {
    const std::unique_ptr<SharedJob> job(static_cast<SharedJob*>(data));
    if ((*job)->withdrawn || (*job)->answer == nullptr) return;
    if (!(*job)->problem.empty()) {
        __dlog_print(DLOG_ID_MAIN, DLOG_WARN, "NETWORK", "online check of %s: %s", (*job)->request.url.c_str(),
                     (*job)->problem.c_str());
    }
    const Answer answer = std::move((*job)->answer);
    answer((*job)->result);
}

class HttpProbe final : public Question {
  public:
    explicit HttpProbe(SharedJob job) : job_(std::move(job)) {}
    ~HttpProbe() override { job_->withdrawn = true; }

  private:
    SharedJob job_;
};

}  // namespace

std::unique_ptr<Question> probeHttp(HttpRequest request, Answer answer) {
    static std::once_flag initialised;
    std::call_once(initialised, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
    const auto job = std::make_shared<HttpJob>();
    job->request = std::move(request);
    const auto work = [](void* data, Ecore_Thread*) { perform(**static_cast<SharedJob*>(data)); };
    // A thread that cannot be had is told through the cancel function at once, when there is no answer to give yet.
    auto* const shared = new SharedJob(job);
    if (ecore_thread_run(work, &finish, &finish, shared) == nullptr) return nullptr;
    job->answer = std::move(answer);
    return std::make_unique<HttpProbe>(job);
}

}  // namespace network
