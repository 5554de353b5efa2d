// SPDX-License-Identifier: BSD-2-Clause
/**
 * pxk.hpp: the C interface of pxk for programs in C++17 and later.
 *
 *     pxk::Image photo(pxk::bgr(), 640, 480, 200);              // owns its pixels; every sample is 200
 *     pxk::Image sum = photo.clone();
 *     pxk::call(pxkAdd, photo, photo, sum.region({ 0, 0, 320, 240 }));
 *     std::uint8_t blue = sum.at<std::uint8_t>(10, 20);
 *
 * - pxk::call calls any function of pxk.h and throws when it reports a failure. Functions keep their names and their
 *   arguments, so the reference of pxk.h is the reference of this file too. Wherever a PxkImage* is asked for, an Image
 *   or a View will do, and nullptr where pxk.h allows a null image.
 * - pxk::Image owns a header and its pixels. It can be moved, and copied by clone() only.
 * - pxk::View is a header by value over pixels of another owner: of an Image or of the program. Its region, channel of
 *   interest and mask belong to the view, and can be chained: image.region(r).channel(2).masked(bits).
 * - pxk::Error carries status, function and text of the first report. pxk::Tiles delivers tiles from C++; an exception
 *   that it throws comes out of pxk::call.
 *
 * Everything here is inline and calls the C interface, nothing else. Nothing is allocated but what an Image owns, and
 * an exception when one is thrown. As in C, constness of a header says nothing about its pixels, and one header serves
 * one thread at a time: give every thread a view of its own.
 */
#ifndef PXK_PXK_HPP
#define PXK_PXK_HPP

#include "pxk.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace pxk {

/* ------------------------------------------------------------------------------------------------------------------ */
/** @name Failures */

/** A failure of a call: the first report, which names the cause. Longer texts are cut. */
class Error : public std::exception {
public:
    Error(std::int32_t status, const char* function, const char* text) noexcept
        : status_(status)
    {
        std::snprintf(function_, sizeof function_, "%s", function ? function : "");
        std::snprintf(text_, sizeof text_, "%s", text ? text : "");
        std::snprintf(what_, sizeof what_, "%s%s%s (status %ld, %s)", function_, *function_ ? ": " : "", text_,
                      static_cast<long>(status), pxkErrorStr(status));
    }

    std::int32_t status() const noexcept { return status_; }     /**< PXK_Sts... */
    const char* function() const noexcept { return function_; }  /**< who reported it; empty without a report */
    const char* text() const noexcept { return text_; }          /**< the condition that failed, or a message */
    const char* what() const noexcept override { return what_; } /**< all of it, to be read by people */

private:
    std::int32_t status_;
    char function_[64];
    char text_[320];
    char what_[512];
};

namespace detail {

    /** Takes the reports of one call, and gives the thread its status, mode and handler back. */
    class Listener {
    public:
        Listener() noexcept
            : outer_(std::exchange(current(), this))
            , status_(pxkGetErrStatus())
            , mode_(pxkGetErrMode())
            , handler_(pxkRedirectError(&Listener::take))
        {
            pxkSetErrMode(PXK_ErrModeParent);
            pxkSetErrStatus(PXK_StsOk);
        }

        ~Listener()
        {
            pxkRedirectError(handler_);
            pxkSetErrMode(mode_);
            pxkSetErrStatus(status_);
            current() = outer_;
        }

        Listener(const Listener&) = delete;
        Listener& operator=(const Listener&) = delete;

        /** Throws what a tile source threw, or the report. `isNull`: the call was to return a pointer and has none. */
        void throwFailure(bool isNull) const
        {
            if (thrown_) std::rethrow_exception(thrown_);
            if (report_) throw *report_;
            const std::int32_t stored = isNull ? PXK_StsNoMem : pxkGetErrStatus();
            if (stored < 0) throw Error(stored, "", "no report");
        }

        /** Keeps the exception in flight until the call that it interrupts has returned. */
        static void keepException() noexcept
        {
            if (current() && !current()->thrown_) current()->thrown_ = std::current_exception();
        }

    private:
        static Listener*& current() noexcept
        {
            static thread_local Listener* listener = nullptr;
            return listener;
        }

        /** The first report is kept; one that only passes a failure on gives way to a cause. */
        static std::int32_t PXK_CALL take(std::int32_t status, const char* function, const char* text, const char*,
                                          std::int32_t) noexcept
        {
            Listener& listener = *current();
            if (!listener.report_ || listener.report_->status() == PXK_StsBackTrace)
                listener.report_.emplace(status, function, text);
            return status;
        }

        Listener* outer_;
        std::int32_t status_;
        std::int32_t mode_;
        PxkErrorCallBack handler_;
        std::optional<Error> report_;
        std::exception_ptr thrown_;
    };

} // namespace detail

/**
 * Calls a function of pxk.h with status 0 and returns its result. Throws Error when it reports a failure, when it
 * stores one without a report (pxkCheckImageHeader), or when it returns a null pointer; throws what a tile source
 * threw. The thread's own status, mode and handler are as they were afterwards.
 *
 * Some failures have no report in C either: an operation whose region misses its image does nothing. Functions that
 * handle status, mode and handler themselves can't fail and are called without this one.
 */
template <class Result, class... Parameters, class... Arguments>
Result call(Result(PXK_CALL* function)(Parameters...), Arguments&&... arguments)
{
    static_assert(sizeof...(Parameters) == sizeof...(Arguments), "pxk::call: number of arguments");
    detail::Listener listener;
    if constexpr (std::is_void_v<Result>) {
        function(std::forward<Arguments>(arguments)...);
        listener.throwFailure(false);
    } else {
        const Result result = function(std::forward<Arguments>(arguments)...);
        bool isNull = false;
        if constexpr (std::is_pointer_v<Result>) isNull = !result;
        listener.throwFailure(isNull);
        return result;
    }
}

/* ------------------------------------------------------------------------------------------------------------------ */
/** @name What an image is made of */

/** Part of an image: a rectangle, counted from the first stored row. Beyond the image it is cut off. */
struct Region {
    std::int32_t x = 0, y = 0, width = 0, height = 0;
};

/** What a pixel is and how pixels lie: the arguments of pxkCreateImageHeader that are not a size. */
struct Format {
    std::int32_t depth = PXK_DEPTH_8U;
    std::int32_t nChannels = 1;
    const char* colorModel = "GRAY";
    const char* channelSeq = "G";
    std::int32_t alphaChannel = 0;
    std::int32_t dataOrder = PXK_DATA_ORDER_PIXEL;
    std::int32_t origin = 0;
    std::int32_t align = 32;

    /** The same with each channel in a plane of its own. */
    constexpr Format planes() const noexcept
    {
        Format changed = *this;
        changed.dataOrder = PXK_DATA_ORDER_PLANE;
        return changed;
    }

    /** The same with the bottom row stored first. */
    constexpr Format bottomUp() const noexcept
    {
        Format changed = *this;
        changed.origin = 1;
        return changed;
    }

    /** Bytes of a row of samples, without padding. */
    constexpr std::int64_t rowBytes(std::int32_t width) const noexcept
    {
        const std::int64_t samples = dataOrder == PXK_DATA_ORDER_PIXEL ? std::int64_t { width } * nChannels : width;
        return (samples * (depth & INT32_MAX) + 7) / 8; // the sign is a flag
    }
};

constexpr Format bits() noexcept
{
    return { PXK_DEPTH_1U };
}
constexpr Format gray(std::int32_t depth = PXK_DEPTH_8U) noexcept
{
    return { depth };
}
constexpr Format rgb(std::int32_t depth = PXK_DEPTH_8U) noexcept
{
    return { depth, 3, "RGB", "RGB" };
}
constexpr Format bgr(std::int32_t depth = PXK_DEPTH_8U) noexcept
{
    return { depth, 3, "RGB", "BGR" };
}
constexpr Format rgba(std::int32_t depth = PXK_DEPTH_8U) noexcept
{
    return { depth, 4, "RGBA", "RGBA", 4 };
}
constexpr Format bgra(std::int32_t depth = PXK_DEPTH_8U) noexcept
{
    return { depth, 4, "RGBA", "BGRA", 4 };
}

/** Bytes from a sample to the same one of the next row, pixel and channel. */
struct Strides {
    std::ptrdiff_t row, pixel, channel;
};

/** Some samples, one behind the other. */
template <class T> class Span {
public:
    constexpr Span(T* data, std::size_t size) noexcept
        : data_(data)
        , size_(size)
    {
    }
    constexpr T* data() const noexcept { return data_; }
    constexpr std::size_t size() const noexcept { return size_; }
    constexpr T* begin() const noexcept { return data_; }
    constexpr T* end() const noexcept { return data_ + size_; }
    constexpr T& operator[](std::size_t i) const noexcept { return data_[i]; }

private:
    T* data_;
    std::size_t size_;
};

namespace detail {

    /** Whether samples of a depth are Ts; bits come as bytes of eight pixels, the first one in the highest bit. */
    template <class T> constexpr bool holds(std::int32_t depth) noexcept
    {
        using Sample = std::remove_cv_t<T>;
        if constexpr (std::is_same_v<Sample, float>)
            return depth == PXK_DEPTH_32F;
        else if constexpr (!std::is_integral_v<Sample>)
            return false;
        else if constexpr (std::is_signed_v<Sample>)
            return depth == (INT32_MIN | std::int32_t { 8 * sizeof(T) });
        else
            return (depth == 8 * sizeof(T) && depth <= 16) || (depth == PXK_DEPTH_1U && sizeof(T) == 1);
    }

} // namespace detail

class View;

/** What Image and View have in common: access to samples, and views of a part. Self has get(). */
template <class Self> class Pixels {
public:
    std::int32_t width() const noexcept { return header().width; }
    std::int32_t height() const noexcept { return header().height; }
    std::int32_t nChannels() const noexcept { return header().nChannels; }
    std::int32_t depth() const noexcept { return header().depth; }

    /** At depth 1, where pixels have no address, `pixel` is 0. */
    Strides strides() const noexcept
    {
        const PxkImage& image = header();
        const std::ptrdiff_t sample = (image.depth & INT32_MAX) / 8;
        if (image.dataOrder == PXK_DATA_ORDER_PIXEL) return { image.widthStep, sample * image.nChannels, sample };
        return { image.widthStep, sample, std::ptrdiff_t { image.widthStep } * image.height };
    }

    /**
     * Row y as it is stored: all channels in pixel order, channel c in planes. It is a row of the image, whatever the
     * region. Throws Error unless T is the type of the depth and the row exists in memory.
     */
    template <class T> Span<T> row(std::int32_t y, std::int32_t c = 0) const
    {
        const PxkImage& image = header();
        const bool isPixelOrder = image.dataOrder == PXK_DATA_ORDER_PIXEL;
        requireSample<T>("row");
        if (y < 0 || y >= image.height || c < 0 || c >= (isPixelOrder ? 1 : image.nChannels))
            throw Error(PXK_StsBadArg, "row", "no such row");
        const std::int32_t samples = isPixelOrder ? image.width * image.nChannels : image.width;
        T* const first = reinterpret_cast<T*>(bytes() + y * strides().row + c * strides().channel);
        return { first, static_cast<std::size_t>(image.depth == PXK_DEPTH_1U ? (samples + 7) / 8 : samples) };
    }

    /** Sample (x, y) of channel c, from 0 on. For loops take row(). At depth 1 call pxkGetPixel and pxkPutPixel. */
    template <class T> T& at(std::int32_t x, std::int32_t y, std::int32_t c = 0) const
    {
        const PxkImage& image = header();
        requireSample<T>("at");
        if (image.depth == PXK_DEPTH_1U) throw Error(PXK_StsBadDepth, "at", "bits have no address");
        if (x < 0 || x >= image.width || y < 0 || y >= image.height || c < 0 || c >= image.nChannels)
            throw Error(PXK_StsBadArg, "at", "no such sample");
        const Strides step = strides();
        return *reinterpret_cast<T*>(bytes() + y * step.row + x * step.pixel + c * step.channel);
    }

    /** A view of the same pixels, restricted. `channel` counts from 1; 0 means all but alpha. */
    View region(const Region& region) const noexcept;
    View channel(std::int32_t channel) const noexcept;
    /** Pixels change where `mask`, a one-bit image in memory, has a 1. Its pixels must outlive the view. */
    View masked(const View& mask) const noexcept;

    operator PxkImage*() const noexcept { return static_cast<const Self*>(this)->get(); }

private:
    const PxkImage& header() const noexcept { return *static_cast<const Self*>(this)->get(); }
    std::uint8_t* bytes() const noexcept { return static_cast<std::uint8_t*>(header().imageData); }

    template <class T> void requireSample(const char* function) const
    {
        if (!detail::holds<T>(header().depth)) throw Error(PXK_StsBadDepth, function, "another type than the depth's");
        if (!header().imageData) throw Error(PXK_StsBadDataPointers, function, "no pixels in memory");
    }
};

/* ------------------------------------------------------------------------------------------------------------------ */
/** @name Images */

/**
 * Delivers the pixels of an image tile by tile, as PxkTileCallBack tells. Derive from it, and make a View of it. An
 * exception of tile() refuses the tile, which ends the operation, and comes out of pxk::call.
 */
class Tiles : private PxkTileInfo {
public:
    /** The size of a tile: positive multiples of 8. */
    Tiles(std::int32_t tileWidth, std::int32_t tileHeight) noexcept
        : PxkTileInfo { &Tiles::deliver, 0, nullptr, tileWidth, tileHeight }
    {
    }
    virtual ~Tiles() = default;
    Tiles(const Tiles&) = delete;
    Tiles& operator=(const Tiles&) = delete;

    /** The first pixel of a tile, for PXK_TILE_READ or PXK_TILE_WRITE; null refuses it. Several may be held at once. */
    virtual void* tile(std::int32_t xIndex, std::int32_t yIndex, std::int32_t mode) = 0;
    /** The tile is not used any more. */
    virtual void release(std::int32_t xIndex, std::int32_t yIndex, void* tile) noexcept = 0;

private:
    friend class View;

    static std::int32_t PXK_CALL deliver(PxkImage* image, std::int32_t xIndex, std::int32_t yIndex,
                                         std::int32_t mode) noexcept
    {
        Tiles& self = static_cast<Tiles&>(*image->tileInfo);
        if (mode == PXK_TILE_RELEASE) {
            self.release(xIndex, yIndex, self.tileData);
            return 0;
        }
        self.tileData = nullptr;
        try {
            self.tileData = self.tile(xIndex, yIndex, mode);
        } catch (...) {
            detail::Listener::keepException();
        }
        return 0;
    }
};

/** A header over the pixels of another owner, who must outlive it. Cheap to copy; owns nothing. */
class View : public Pixels<View> {
public:
    /** A header as it is now, with its region and mask. */
    View(const PxkImage& image) noexcept
        : header_(image)
    {
        header_.imageDataBase = nullptr;
        if (header_.roi) region_ = *header_.roi;
        if (!header_.maskROI) return;
        mask_ = *header_.maskROI;
        mask_.maskROI = nullptr; // it would select nothing
        if (mask_.roi) maskRegion_ = *mask_.roi;
    }

    template <class Self>
    View(const Pixels<Self>& image) noexcept
        : View(*static_cast<PxkImage*>(image))
    {
    }

    View(const View& other) noexcept
        : View(*other.get())
    {
    }
    View& operator=(const View& other) noexcept = default;

    /**
     * Pixels of the program: rowBytes from row to row, 0 when rows follow each other without padding; planes are
     * height * rowBytes apart. What lies between the rows is never written, and need not be there behind the last one.
     * Throws Error for a format or a size that no image can have. Constant pixels may only be read: the C interface
     * doesn't tell sources from destinations.
     */
    View(const void* pixels, const Format& format, std::int32_t width, std::int32_t height, std::int32_t rowBytes = 0)
        : View(format, width, height, rowBytes)
    {
        header_.imageData = const_cast<void*>(pixels);
        call(pxkCheckImageHeader, get());
    }

    /** The same of a container with data() and size(), which must be large enough and hold the type of the depth. */
    template <class Samples, class T = std::remove_pointer_t<decltype(std::declval<Samples&>().data())>>
    View(Samples& samples, const Format& format, std::int32_t width, std::int32_t height, std::int32_t rowBytes = 0)
        : View(static_cast<const void*>(samples.data()), format, width, height, rowBytes)
    {
        if (!detail::holds<T>(format.depth)) throw Error(PXK_StsBadDepth, "View", "another type than the depth's");
        if (samples.size() * sizeof(T) < static_cast<std::size_t>(header_.imageSize))
            throw Error(PXK_StsBadImageSize, "View", "fewer samples than the image has");
    }

    /** Pixels that come in tiles. */
    View(Tiles& tiles, const Format& format, std::int32_t width, std::int32_t height)
        : View(format, width, height, 0)
    {
        header_.tileInfo = &tiles;
        call(pxkCheckImageHeader, get());
    }

    /** The header for the C interface, valid as long as the view. */
    PxkImage* get() const noexcept
    {
        if (header_.roi) header_.roi = &region_;
        if (header_.maskROI) header_.maskROI = &mask_;
        if (mask_.roi) mask_.roi = &maskRegion_;
        return &header_;
    }

private:
    friend class Pixels<View>;
    template <class> friend class Pixels;

    View(const Format& format, std::int32_t width, std::int32_t height, std::int32_t rowBytes) noexcept
    {
        const std::int64_t step = rowBytes ? rowBytes : format.rowBytes(width);
        const std::int64_t rows = std::int64_t { height } * (format.dataOrder ? format.nChannels : 1);
        header_.headerSize = sizeof(PxkImage);
        header_.nChannels = format.nChannels;
        header_.alphaChannel = format.alphaChannel;
        header_.depth = format.depth;
        for (int i = 0; i < 4 && format.colorModel[i]; ++i) header_.colorModel[i] = format.colorModel[i];
        for (int i = 0; i < 4 && format.channelSeq[i]; ++i) header_.channelSeq[i] = format.channelSeq[i];
        header_.dataOrder = format.dataOrder;
        header_.origin = format.origin;
        header_.align = format.align;
        header_.width = width;
        header_.height = height;
        if (step < format.rowBytes(width) || step * rows > INT32_MAX) return; // the check finds no size
        header_.widthStep = static_cast<std::int32_t>(step);
        // Without the last padding: only an image of whole rows is worked on as one block, gaps included.
        header_.imageSize = static_cast<std::int32_t>(step * (rows - 1) + format.rowBytes(width));
    }

    // The C interface takes pointers, which get() sets: a view may have been copied since.
    mutable PxkImage header_ {};
    mutable PxkImage mask_ {};
    mutable PxkROI region_ {};
    mutable PxkROI maskRegion_ {};
};

/** Owns a header, its pixels and a region record that came with it. */
class Image : public Pixels<Image> {
public:
    /** Pixels that are not initialised, or hold `fill` in all channels. Throws Error, also when out of memory. */
    Image(const Format& format, std::int32_t width, std::int32_t height)
        : Image(format, width, height, false, 0)
    {
    }
    Image(const Format& format, std::int32_t width, std::int32_t height, double fill)
        : Image(format, width, height, true, fill)
    {
    }

    /** Takes over what a function of pxk.h has made, such as pxkCreateImageJaehne or pxkTranslateDIB. */
    explicit Image(PxkImage* made) noexcept
        : header_(made)
    {
    }

    /** A copy with its own pixels: pxkCloneImage. */
    Image clone() const { return Image(call(pxkCloneImage, get())); }

    PxkImage* get() const noexcept { return header_.get(); }
    PxkImage* release() noexcept { return header_.release(); }

private:
    Image(const Format& format, std::int32_t width, std::int32_t height, bool doFill, double fill)
        : header_(call(pxkCreateImageHeader, format.nChannels, format.alphaChannel, format.depth, format.colorModel,
                       format.channelSeq, format.dataOrder, format.origin, format.align, width, height, nullptr,
                       nullptr, nullptr, nullptr))
    {
        if (format.depth == PXK_DEPTH_32F)
            call(pxkAllocateImageFP, get(), doFill, static_cast<float>(fill));
        else
            call(pxkAllocateImage, get(), doFill, static_cast<std::int32_t>(fill));
        if (!header_->imageData) throw Error(PXK_StsNoMem, "pxkAllocateImage", "no memory for the pixels");
    }

    struct Release {
        void operator()(PxkImage* image) const noexcept
        {
            pxkDeallocate(image, PXK_FREE_HEADER | PXK_FREE_DATA | PXK_FREE_ROI);
        }
    };
    std::unique_ptr<PxkImage, Release> header_;
};

template <class Self> View Pixels<Self>::region(const Region& region) const noexcept
{
    View part(*this);
    part.region_ = { part.header_.roi ? part.region_.coi : 0, region.x, region.y, region.width, region.height };
    part.header_.roi = &part.region_;
    return part;
}

template <class Self> View Pixels<Self>::channel(std::int32_t channel) const noexcept
{
    View part(*this);
    if (!part.header_.roi) part.region_ = { 0, 0, 0, width(), height() };
    part.region_.coi = channel;
    part.header_.roi = &part.region_;
    return part;
}

template <class Self> View Pixels<Self>::masked(const View& mask) const noexcept
{
    View part(*this);
    part.mask_ = *mask.get();
    part.mask_.maskROI = nullptr;
    part.maskRegion_ = mask.region_;
    part.header_.maskROI = &part.mask_;
    return part;
}

/* ------------------------------------------------------------------------------------------------------------------ */
/** @name Other records */

/** Owns a record of pxk.h. `pxk::Kernel smooth(pxk::call(pxkCreateConvKernel, 3, 1, 1, 0, values, 2));` */
template <class Record, class Delete> class Owned : public std::unique_ptr<Record, Delete> {
public:
    explicit Owned(Record* made) noexcept
        : std::unique_ptr<Record, Delete>(made)
    {
    }
    operator Record*() const noexcept { return this->get(); }
};

namespace detail {

    struct Delete {
        void operator()(PxkConvKernel* kernel) const noexcept { pxkDeleteConvKernel(kernel); }
        void operator()(PxkConvKernelFP* kernel) const noexcept { pxkDeleteConvKernelFP(kernel); }
        void operator()(PxkColorTwist* twist) const noexcept { pxkDeleteColorTwist(twist); }
        void operator()(void* block) const noexcept { pxkFree(block); }
    };

} // namespace detail

using Kernel = Owned<PxkConvKernel, detail::Delete>;
using KernelFP = Owned<PxkConvKernelFP, detail::Delete>;
using ColorTwist = Owned<PxkColorTwist, detail::Delete>;
using Memory = Owned<void, detail::Delete>; /**< of the pxkMalloc family */

} // namespace pxk

#endif
