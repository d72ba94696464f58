<?xml version="1.0" encoding="UTF-8"?>
<!-- Shows a method trace as one HTML page, which needs nothing else: no script, no network. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
<xsl:output method="html" encoding="UTF-8" indent="no" doctype-system="about:legacy-compat"/>

<!-- How many calls the two lists at the top name, where the indentation ends, and from how many
     characters or elements on a value stands in a box that scrolls. -->
<xsl:variable name="listed" select="5"/>
<xsl:variable name="deepest" select="8"/>
<xsl:variable name="long" select="200"/>
<xsl:variable name="many" select="24"/>

<!-- A call within another one stands as an element within the other's. -->
<xsl:variable name="calls" select="/TraceRecords//Method"/>
<!-- Those that failed: a negative status has the highest of its 32 bits set. -->
<xsl:key name="failure" use="generate-id()"
    match="Method[translate(substring(HRESULT/@Value, 3, 1), '89ABCDEF', '') = '' and HRESULT]"/>
<xsl:variable name="failed" select="$calls[key('failure', generate-id())]"/>

<!-- The longest duration, which the bars are measured by. The order is by zero or not, exponent and
     mantissa, here and in the list of the slowest calls: XSLT 1.0 can't share it. -->
<xsl:variable name="slowest">
  <xsl:call-template name="nanoseconds">
    <xsl:with-param name="seconds">
      <xsl:for-each select="$calls[Execution]">
        <xsl:sort select="starts-with(Execution/@ExecutionTime, '0.000000e')"/>
        <xsl:sort select="translate(substring-after(Execution/@ExecutionTime, 'e'), '+', '')"
                  data-type="number" order="descending"/>
        <xsl:sort select="substring-before(Execution/@ExecutionTime, 'e')"
                  data-type="number" order="descending"/>
        <xsl:if test="position() = 1">
          <xsl:value-of select="Execution/@ExecutionTime"/>
        </xsl:if>
      </xsl:for-each>
    </xsl:with-param>
  </xsl:call-template>
</xsl:variable>

<!-- The page -->

<xsl:template match="/">
  <html lang="en">
    <head>
      <meta name="viewport" content="width=device-width, initial-scale=1"/>
      <title>
        <xsl:text>Method trace: </xsl:text>
        <xsl:call-template name="counted">
          <xsl:with-param name="count" select="count($calls)"/>
          <xsl:with-param name="noun" select="'call'"/>
        </xsl:call-template>
        <xsl:text>, </xsl:text>
        <xsl:value-of select="count($failed)"/>
        <xsl:text> failed</xsl:text>
      </title>
      <xsl:call-template name="style"/>
    </head>
    <body>
      <header>
        <h1>Method trace</h1>
        <xsl:call-template name="figures"/>
      </header>
      <main>
        <xsl:choose>
          <xsl:when test="$calls">
            <div class="lists">
              <xsl:call-template name="slowest-calls"/>
              <xsl:call-template name="failed-calls"/>
            </div>
            <xsl:call-template name="all-calls"/>
            <xsl:call-template name="end"/>
          </xsl:when>
          <xsl:otherwise>
            <p class="note">No call was recorded.</p>
          </xsl:otherwise>
        </xsl:choose>
      </main>
    </body>
  </html>
</xsl:template>

<xsl:template name="figures">
  <xsl:variable name="nested" select="count($calls[parent::Method])"/>
  <dl class="figures">
    <div>
      <dt>Calls</dt>
      <dd id="calls"><xsl:value-of select="count($calls)"/></dd>
      <xsl:if test="$nested &gt; 0">
        <dd class="aside"><xsl:value-of select="$nested"/> within others</dd>
      </xsl:if>
    </div>
    <div>
      <xsl:if test="$failed"><xsl:attribute name="class">failures</xsl:attribute></xsl:if>
      <dt>Failed</dt>
      <dd id="failed"><xsl:value-of select="count($failed)"/></dd>
    </div>
    <xsl:if test="$calls">
      <div>
        <dt>Time in calls</dt>
        <dd id="total">
          <xsl:call-template name="duration">
            <xsl:with-param name="nanoseconds">
              <xsl:call-template name="sum">
                <xsl:with-param name="executions" select="/TraceRecords/Method/Execution"/>
              </xsl:call-template>
            </xsl:with-param>
          </xsl:call-template>
        </dd>
      </div>
      <div>
        <dt>Span</dt>
        <dd id="span"><xsl:call-template name="span"/></dd>
        <dd class="aside">
          <xsl:call-template name="clock">
            <xsl:with-param name="time" select="$calls[1]/@StartTime"/>
          </xsl:call-template>
          <xsl:text> to </xsl:text>
          <xsl:call-template name="clock">
            <xsl:with-param name="time" select="$calls[last()]/@StartTime"/>
          </xsl:call-template>
        </dd>
      </div>
    </xsl:if>
  </dl>
</xsl:template>

<xsl:template name="slowest-calls">
  <section class="list">
    <h2>Slowest calls</h2>
    <ol id="slowest">
      <xsl:for-each select="$calls[Execution]">
        <xsl:sort select="starts-with(Execution/@ExecutionTime, '0.000000e')"/>
        <xsl:sort select="translate(substring-after(Execution/@ExecutionTime, 'e'), '+', '')"
                  data-type="number" order="descending"/>
        <xsl:sort select="substring-before(Execution/@ExecutionTime, 'e')"
                  data-type="number" order="descending"/>
        <xsl:if test="position() &lt;= $listed">
          <li>
            <xsl:attribute name="class"><xsl:call-template name="outcome"/></xsl:attribute>
            <span class="which">
              <xsl:call-template name="link"/>
              <xsl:call-template name="mark"/>
            </span>
            <xsl:apply-templates select="Execution"/>
          </li>
        </xsl:if>
      </xsl:for-each>
    </ol>
  </section>
</xsl:template>

<xsl:template name="failed-calls">
  <section class="list">
    <h2>Failed calls</h2>
    <xsl:choose>
      <xsl:when test="$failed">
        <ol id="failures">
          <xsl:for-each select="$failed[position() &lt;= $listed]">
            <li>
              <xsl:call-template name="link"/>
              <span class="message">
                <xsl:choose>
                  <xsl:when test="HRESULT/@Message">
                    <xsl:value-of select="HRESULT/@Message"/>
                  </xsl:when>
                  <xsl:otherwise><xsl:value-of select="HRESULT/@Value"/></xsl:otherwise>
                </xsl:choose>
              </span>
            </li>
          </xsl:for-each>
        </ol>
        <xsl:if test="count($failed) &gt; $listed">
          <p class="more">
            <xsl:text>and </xsl:text>
            <xsl:value-of select="count($failed) - $listed"/>
            <xsl:text> more, marked below</xsl:text>
          </p>
        </xsl:if>
      </xsl:when>
      <xsl:otherwise><p class="more">None.</p></xsl:otherwise>
    </xsl:choose>
  </section>
</xsl:template>

<!-- To the row of a call. -->
<xsl:template name="link">
  <xsl:variable name="number" select="count(preceding::Method | ancestor::Method) + 1"/>
  <a href="#call-{$number}">
    <span class="number"><xsl:value-of select="$number"/></span>
    <xsl:call-template name="member"/>
  </a>
</xsl:template>

<xsl:template name="member">
  <span class="member">
    <span class="interface">
      <xsl:value-of select="@Interface"/>
      <xsl:text>.</xsl:text>
    </span>
    <xsl:value-of select="@Name"/>
  </span>
</xsl:template>

<!-- The end of a document without a record of Close: worth a word, since calls are missing. -->
<xsl:template name="end">
  <xsl:variable name="open" select="count($calls[not(HRESULT)])"/>
  <xsl:if test="$open &gt; 0">
    <p class="note" id="open-calls">
      <xsl:call-template name="counted">
        <xsl:with-param name="count" select="$open"/>
        <xsl:with-param name="noun" select="'call'"/>
      </xsl:call-template>
      <xsl:text> had not ended when the trace did.</xsl:text>
    </p>
  </xsl:if>
  <xsl:if test="not(/TraceRecords/Method[last()]/@Name = 'Close')">
    <p class="note" id="no-close">The trace ends without a record of Close: it has reached its
    size limit, it was switched off, or the driver was released while it was connected.</p>
  </xsl:if>
</xsl:template>

<!-- The table -->

<xsl:template name="all-calls">
  <table>
    <thead>
      <tr>
        <th scope="col" class="number">No.</th>
        <th scope="col">Start</th>
        <th scope="col">Thread</th>
        <th scope="col">Call</th>
        <th scope="col">Arguments</th>
        <th scope="col">Status</th>
        <th scope="col">Duration</th>
      </tr>
    </thead>
    <tbody id="records">
      <xsl:for-each select="$calls"><xsl:call-template name="row"/></xsl:for-each>
    </tbody>
  </table>
</xsl:template>

<xsl:template name="row">
  <xsl:variable name="depth" select="count(ancestor::Method)"/>
  <xsl:variable name="shown"
      select="$depth * ($depth &lt;= $deepest) + $deepest * ($depth &gt; $deepest)"/>
  <xsl:variable name="class">
    <xsl:call-template name="outcome"/>
    <xsl:if test="$depth &gt; 0"> nested</xsl:if>
  </xsl:variable>
  <tr id="call-{position()}" class="{$class}" data-depth="{$depth}">
    <xsl:if test="$depth &gt; 0">
      <xsl:attribute name="style">
        <xsl:value-of select="concat('--depth: ', $shown)"/>
      </xsl:attribute>
    </xsl:if>
    <td class="number"><xsl:value-of select="position()"/></td>
    <td class="start">
      <xsl:call-template name="clock">
        <xsl:with-param name="time" select="@StartTime"/>
      </xsl:call-template>
    </td>
    <td class="thread"><xsl:value-of select="@Thread"/></td>
    <td class="call"><xsl:call-template name="member"/></td>
    <td class="arguments"><xsl:apply-templates select="Parameter"/></td>
    <td class="status"><xsl:call-template name="status"/></td>
    <td class="duration">
      <xsl:apply-templates select="Execution"/>
      <xsl:if test="not(Execution)">&#x2013;</xsl:if>
    </td>
  </tr>
</xsl:template>

<xsl:template name="outcome">
  <xsl:choose>
    <xsl:when test="not(HRESULT)">open</xsl:when>
    <xsl:when test="HRESULT/@Value = '0x00000000'">passed</xsl:when>
    <xsl:when test="key('failure', generate-id())">failed</xsl:when>
    <xsl:otherwise>warned</xsl:otherwise>
  </xsl:choose>
</xsl:template>

<!-- The word for a call that isn't simply over and well. -->
<xsl:template name="mark">
  <xsl:variable name="outcome"><xsl:call-template name="outcome"/></xsl:variable>
  <xsl:choose>
    <xsl:when test="$outcome = 'failed'"><strong class="mark">FAILED</strong></xsl:when>
    <xsl:when test="$outcome = 'warned'"><strong class="mark">WARNING</strong></xsl:when>
    <xsl:when test="$outcome = 'open'"><strong class="mark">NOT ENDED</strong></xsl:when>
  </xsl:choose>
</xsl:template>

<xsl:template name="status">
  <xsl:call-template name="mark"/>
  <xsl:if test="HRESULT">
    <code><xsl:value-of select="HRESULT/@Value"/></code>
  </xsl:if>
  <xsl:if test="HRESULT/@Message">
    <span class="message"><xsl:value-of select="HRESULT/@Message"/></span>
  </xsl:if>
</xsl:template>

<xsl:template match="Execution">
  <xsl:variable name="nanoseconds">
    <xsl:call-template name="nanoseconds">
      <xsl:with-param name="seconds" select="@ExecutionTime"/>
    </xsl:call-template>
  </xsl:variable>
  <span class="time">
    <span class="figure">
      <xsl:call-template name="duration">
        <xsl:with-param name="nanoseconds" select="$nanoseconds"/>
      </xsl:call-template>
    </span>
    <xsl:if test="$nanoseconds &gt; 0">
      <span class="track" aria-hidden="true">
        <span class="bar">
          <xsl:attribute name="style">
            <xsl:text>width: </xsl:text>
            <xsl:value-of select="format-number($nanoseconds div $slowest * 100, '0.##')"/>
            <xsl:text>%</xsl:text>
          </xsl:attribute>
        </span>
      </span>
    </xsl:if>
  </span>
</xsl:template>

<!-- Arguments -->

<xsl:template match="Parameter">
  <!-- What is passed in and out is written twice: as it was at entry and as it was at exit. -->
  <xsl:variable name="isOut"
      select="@Direction = 'Out' or (@Direction = 'InOut'
              and preceding-sibling::Parameter[@Direction = 'InOut' and @Name = current()/@Name])"/>
  <div class="parameter">
    <span>
      <xsl:choose>
        <xsl:when test="$isOut">
          <xsl:attribute name="class">direction out</xsl:attribute>
          <xsl:text>out</xsl:text>
        </xsl:when>
        <xsl:otherwise>
          <xsl:attribute name="class">direction in</xsl:attribute>
          <xsl:text>in</xsl:text>
        </xsl:otherwise>
      </xsl:choose>
    </span>
    <span class="argument">
      <span class="name"><xsl:value-of select="@Name"/></span>
      <xsl:choose>
        <xsl:when test="@DimSizes"><xsl:call-template name="array"/></xsl:when>
        <xsl:otherwise>
          <xsl:text> = </xsl:text>
          <xsl:call-template name="value">
            <xsl:with-param name="isText" select="@DataType = 'String'"/>
          </xsl:call-template>
          <xsl:text> </xsl:text>
          <span class="type"><xsl:value-of select="@DataType"/></span>
        </xsl:otherwise>
      </xsl:choose>
    </span>
  </div>
</xsl:template>

<!-- Text stands in quotes, so that an empty one and blanks at its ends can be seen. -->
<xsl:template name="value">
  <xsl:param name="isText"/>
  <xsl:variable name="quote">
    <xsl:if test="$isText and @Value != '(null)'">"</xsl:if>
  </xsl:variable>
  <span class="value">
    <xsl:if test="string-length(@Value) &gt; $long">
      <xsl:attribute name="class">value long</xsl:attribute>
    </xsl:if>
    <xsl:value-of select="concat($quote, @Value, $quote)"/>
  </span>
</xsl:template>

<xsl:template name="array">
  <xsl:variable name="size">
    <xsl:call-template name="product">
      <xsl:with-param name="factors" select="concat(@DimSizes, ',')"/>
    </xsl:call-template>
  </xsl:variable>
  <xsl:variable name="isText" select="@DataType = 'String[]'"/>
  <xsl:if test="Element">
    <xsl:text> = </xsl:text>
    <span class="elements">
      <xsl:if test="count(Element) &gt; $many">
        <xsl:attribute name="class">elements long</xsl:attribute>
      </xsl:if>
      <xsl:for-each select="Element">
        <xsl:if test="position() &gt; 1">, </xsl:if>
        <xsl:call-template name="value">
          <xsl:with-param name="isText" select="$isText"/>
        </xsl:call-template>
      </xsl:for-each>
      <xsl:if test="count(Element) &lt; $size">, &#x2026;</xsl:if>
    </span>
  </xsl:if>
  <xsl:text> </xsl:text>
  <span class="type">
    <xsl:choose>
      <xsl:when test="contains(@DataType, '[]')">
        <xsl:value-of select="concat(substring-before(@DataType, '[]'), '[', @DimSizes, ']')"/>
      </xsl:when>
      <xsl:otherwise>
        <xsl:value-of select="concat(@DataType, ' [', @DimSizes, ']')"/>
      </xsl:otherwise>
    </xsl:choose>
    <xsl:if test="@NumDims &gt; 1">
      <xsl:value-of select="concat(', ', @NumDims, ' dimensions')"/>
    </xsl:if>
    <xsl:choose>
      <xsl:when test="$size = 0">, empty</xsl:when>
      <xsl:when test="not(Element)">, elements not recorded</xsl:when>
      <xsl:when test="count(Element) &lt; $size">
        <xsl:value-of select="concat(', first ', count(Element), ' of ', $size)"/>
      </xsl:when>
    </xsl:choose>
  </span>
</xsl:template>

<!-- Numbers and times -->

<!-- The product of numbers that each end with a comma. -->
<xsl:template name="product">
  <xsl:param name="factors"/>
  <xsl:param name="product" select="1"/>
  <xsl:choose>
    <xsl:when test="contains($factors, ',')">
      <xsl:call-template name="product">
        <xsl:with-param name="factors" select="substring-after($factors, ',')"/>
        <xsl:with-param name="product"
                        select="$product * number(substring-before($factors, ','))"/>
      </xsl:call-template>
    </xsl:when>
    <xsl:otherwise><xsl:value-of select="$product"/></xsl:otherwise>
  </xsl:choose>
</xsl:template>

<!-- number() doesn't read an exponent, as in 1.250000e-03. -->
<xsl:template name="nanoseconds">
  <xsl:param name="seconds"/>
  <xsl:variable name="exponent"
      select="number(translate(substring-after($seconds, 'e'), '+', '')) + 9"/>
  <xsl:variable name="power">
    <xsl:call-template name="power-of-ten">
      <xsl:with-param name="exponent"
                      select="$exponent * ($exponent &gt; 0) - $exponent * ($exponent &lt; 0)"/>
    </xsl:call-template>
  </xsl:variable>
  <xsl:choose>
    <!-- A number such as "inf" or "nan", or none at all. -->
    <xsl:when test="string($exponent) = 'NaN'">NaN</xsl:when>
    <xsl:when test="$exponent &lt; 0">
      <xsl:value-of select="number(substring-before($seconds, 'e')) div $power"/>
    </xsl:when>
    <xsl:otherwise>
      <xsl:value-of select="number(substring-before($seconds, 'e')) * $power"/>
    </xsl:otherwise>
  </xsl:choose>
</xsl:template>

<xsl:template name="power-of-ten">
  <xsl:param name="exponent"/>
  <xsl:param name="power" select="1"/>
  <xsl:choose>
    <xsl:when test="$exponent &gt; 0">
      <xsl:call-template name="power-of-ten">
        <xsl:with-param name="exponent" select="$exponent - 1"/>
        <xsl:with-param name="power" select="$power * 10"/>
      </xsl:call-template>
    </xsl:when>
    <xsl:otherwise><xsl:value-of select="$power"/></xsl:otherwise>
  </xsl:choose>
</xsl:template>

<!-- The sum of execution times in nanoseconds. Halves are added up, since a processor limits how
     deep templates may call each other. -->
<xsl:template name="sum">
  <xsl:param name="executions"/>
  <xsl:variable name="half" select="floor(count($executions) div 2)"/>
  <xsl:choose>
    <xsl:when test="count($executions) = 0">0</xsl:when>
    <xsl:when test="count($executions) = 1">
      <xsl:call-template name="nanoseconds">
        <xsl:with-param name="seconds" select="$executions/@ExecutionTime"/>
      </xsl:call-template>
    </xsl:when>
    <xsl:otherwise>
      <xsl:variable name="first">
        <xsl:call-template name="sum">
          <xsl:with-param name="executions" select="$executions[position() &lt;= $half]"/>
        </xsl:call-template>
      </xsl:variable>
      <xsl:variable name="second">
        <xsl:call-template name="sum">
          <xsl:with-param name="executions" select="$executions[position() &gt; $half]"/>
        </xsl:call-template>
      </xsl:variable>
      <xsl:value-of select="$first + $second"/>
    </xsl:otherwise>
  </xsl:choose>
</xsl:template>

<!-- In the unit that fits, with three digits. -->
<xsl:template name="duration">
  <xsl:param name="nanoseconds"/>
  <xsl:choose>
    <xsl:when test="string(number($nanoseconds)) = 'NaN'">&#x2013;</xsl:when>
    <xsl:when test="$nanoseconds &lt; 999.5">
      <xsl:call-template name="three-digits">
        <xsl:with-param name="number" select="$nanoseconds"/>
      </xsl:call-template>
      <xsl:text>&#xA0;ns</xsl:text>
    </xsl:when>
    <xsl:when test="$nanoseconds &lt; 999500">
      <xsl:call-template name="three-digits">
        <xsl:with-param name="number" select="$nanoseconds div 1000"/>
      </xsl:call-template>
      <xsl:text>&#xA0;&#xB5;s</xsl:text>
    </xsl:when>
    <xsl:when test="$nanoseconds &lt; 999500000">
      <xsl:call-template name="three-digits">
        <xsl:with-param name="number" select="$nanoseconds div 1000000"/>
      </xsl:call-template>
      <xsl:text>&#xA0;ms</xsl:text>
    </xsl:when>
    <xsl:otherwise>
      <xsl:call-template name="three-digits">
        <xsl:with-param name="number" select="$nanoseconds div 1000000000"/>
      </xsl:call-template>
      <xsl:text>&#xA0;s</xsl:text>
    </xsl:otherwise>
  </xsl:choose>
</xsl:template>

<xsl:template name="three-digits">
  <xsl:param name="number"/>
  <xsl:choose>
    <xsl:when test="$number = 0">0</xsl:when>
    <xsl:when test="$number &lt; 9.995">
      <xsl:value-of select="format-number($number, '0.00')"/>
    </xsl:when>
    <xsl:when test="$number &lt; 99.95">
      <xsl:value-of select="format-number($number, '0.0')"/>
    </xsl:when>
    <xsl:otherwise><xsl:value-of select="format-number($number, '0')"/></xsl:otherwise>
  </xsl:choose>
</xsl:template>

<!-- From the start of the first call to the end of the last one. The times have no date, so that a
     span is known within a day. -->
<xsl:template name="span">
  <xsl:variable name="first">
    <xsl:call-template name="milliseconds">
      <xsl:with-param name="time" select="$calls[1]/@StartTime"/>
    </xsl:call-template>
  </xsl:variable>
  <xsl:variable name="last">
    <xsl:call-template name="milliseconds">
      <xsl:with-param name="time" select="/TraceRecords/Method[last()]/@StartTime"/>
    </xsl:call-template>
  </xsl:variable>
  <xsl:variable name="length">
    <xsl:call-template name="sum">
      <xsl:with-param name="executions" select="/TraceRecords/Method[last()]/Execution"/>
    </xsl:call-template>
  </xsl:variable>
  <xsl:call-template name="duration">
    <xsl:with-param name="nanoseconds"
        select="($last - $first + 86400000 * ($last &lt; $first)) * 1000000 + $length"/>
  </xsl:call-template>
</xsl:template>

<!-- The time of day from hour:minute:second:milliseconds, as one number. -->
<xsl:template name="milliseconds">
  <xsl:param name="time"/>
  <xsl:variable name="minutes" select="substring-after($time, ':')"/>
  <xsl:variable name="seconds" select="substring-after($minutes, ':')"/>
  <xsl:value-of select="substring-before($time, ':') * 3600000
                        + substring-before($minutes, ':') * 60000
                        + substring-before($seconds, ':') * 1000
                        + substring-after($seconds, ':')"/>
</xsl:template>

<!-- The same as people write it: 14:05:07.089. -->
<xsl:template name="clock">
  <xsl:param name="time"/>
  <xsl:variable name="minutes" select="substring-after($time, ':')"/>
  <xsl:variable name="seconds" select="substring-after($minutes, ':')"/>
  <xsl:value-of select="concat(format-number(substring-before($time, ':'), '00'), ':',
                               format-number(substring-before($minutes, ':'), '00'), ':',
                               format-number(substring-before($seconds, ':'), '00'), '.',
                               format-number(substring-after($seconds, ':'), '000'))"/>
</xsl:template>

<xsl:template name="counted">
  <xsl:param name="count"/>
  <xsl:param name="noun"/>
  <xsl:value-of select="concat($count, ' ', $noun)"/>
  <xsl:if test="$count != 1">s</xsl:if>
</xsl:template>

<!-- The look. A failure is told by a word, by a thick edge and by weight, not by colour alone. -->
<xsl:template name="style">
  <style>
    :root {
      color-scheme: light dark;
      --page: #ffffff; --text: #1b2430; --quiet: #5a6675; --line: #dde3ea; --raised: #f4f6f9;
      --link: #1f55b5; --bar: #4a7fd6; --bad: #b3211c; --bad-page: #fdeceb; --warn: #8a5a00;
      --mark-text: #ffffff;
    }
    @media (prefers-color-scheme: dark) {
      :root {
        --page: #12161c; --text: #e3e8ef; --quiet: #98a4b3; --line: #2a323c; --raised: #1a2029;
        --link: #8db8ff; --bar: #5f94e8; --bad: #ff7f78; --bad-page: #371a1c; --warn: #e5b04a;
        --mark-text: #12161c;
      }
    }
    * { box-sizing: border-box; }
    body {
      margin: 0; padding: 1.5rem 2rem 3rem; background: var(--page); color: var(--text);
      font: 14px/1.45 system-ui, "Segoe UI", Roboto, "Helvetica Neue", "DejaVu Sans", sans-serif;
    }
    h1 { font-size: 1.6rem; margin: 0 0 1rem; }
    h2 { font-size: 1rem; margin: 0 0 .5rem; }
    a { color: var(--link); text-decoration: none; }
    a:hover, a:focus-visible { text-decoration: underline; }
    code, .member, .value, .name {
      font-family: ui-monospace, "DejaVu Sans Mono", Menlo, Consolas, monospace; font-size: .93em;
    }

    .figures { display: flex; flex-wrap: wrap; gap: .75rem; margin: 0 0 1.5rem; }
    .figures > div {
      background: var(--raised); border: 1px solid var(--line); border-radius: 6px;
      padding: .6rem 1rem; min-width: 7rem;
    }
    .figures dt { color: var(--quiet); }
    .figures dd { margin: 0; font-size: 1.5rem; font-weight: 600; line-height: 1.25; }
    .figures dd.aside { font-size: .85rem; font-weight: 400; color: var(--quiet); }
    .figures .failures { border: 2px solid var(--bad); background: var(--bad-page); }
    .figures .failures dt, .figures .failures dd { color: var(--bad); }

    .lists {
      display: grid; grid-template-columns: repeat(auto-fit, minmax(min(26rem, 100%), 1fr));
      gap: 1.5rem 2.5rem; margin-bottom: 2rem;
    }
    .list ol { list-style: none; margin: 0; padding: 0; }
    .list li {
      display: grid; grid-template-columns: minmax(0, 1fr) minmax(0, 1fr); gap: .25rem 1rem;
      padding: .3rem 0; border-top: 1px solid var(--line);
    }
    .which { display: flex; gap: .6rem; align-items: baseline; }
    .list a { display: flex; gap: .6rem; align-items: baseline; }
    .list .number { min-width: 2.2em; text-align: right; }
    .more { color: var(--quiet); margin: .3rem 0; }

    table { width: 100%; border-collapse: collapse; table-layout: fixed; }
    th:nth-child(1) { width: 4.1em; }
    th:nth-child(2) { width: 8.3em; }
    th:nth-child(3) { width: 6.2em; }
    th:nth-child(4) { width: 23%; }
    th:nth-child(6) { width: 16%; }
    th:nth-child(7) { width: 19%; }
    th {
      position: sticky; top: 0; background: var(--raised); color: var(--quiet); font-weight: 600;
      text-align: left; border-bottom: 2px solid var(--line); padding: .4rem .6rem; z-index: 1;
    }
    td { vertical-align: top; border-bottom: 1px solid var(--line); padding: .35rem .6rem; }
    tr:target td { background: color-mix(in srgb, var(--link) 16%, var(--page)); }
    tr { scroll-margin-top: 3rem; }
    .number, .start, .thread {
      color: var(--quiet); font-variant-numeric: tabular-nums; white-space: nowrap;
    }
    th.number, td.number { text-align: right; }
    .member { overflow-wrap: anywhere; font-weight: 600; }
    .member .interface { font-weight: 400; color: var(--quiet); }
    /* A long name breaks here first. */
    .member .interface::after { content: "\200B"; }
    .nested td.call { padding-left: calc(.6rem + var(--depth) * 1.4rem); position: relative; }
    .nested td.call::before {
      content: "\21B3"; position: absolute; left: calc(.6rem + (var(--depth) - 1) * 1.4rem);
      color: var(--quiet);
    }

    .parameter {
      display: grid; grid-template-columns: 2.4em minmax(0, 1fr); align-items: baseline;
    }
    .direction { font-size: .8em; color: var(--quiet); }
    .argument { overflow-wrap: anywhere; }
    .value { white-space: pre-wrap; }
    .long {
      display: inline-block; max-width: 100%; max-height: 9em; overflow: auto;
      vertical-align: top; border: 1px solid var(--line); border-radius: 4px; padding: .1em .4em;
    }
    .type { font-size: .85em; color: var(--quiet); }

    .status code { color: var(--quiet); }
    .message { display: block; white-space: pre-wrap; overflow-wrap: anywhere; }
    .mark {
      display: inline-block; border-radius: 3px; padding: 0 .4em; margin-right: .5em;
      font-size: .8em; letter-spacing: .04em; background: var(--quiet); color: var(--mark-text);
    }
    .warned .mark { background: var(--warn); }
    tr.failed td { background: var(--bad-page); }
    tr.failed td:first-child { box-shadow: inset 5px 0 0 var(--bad); }
    .failed .mark { background: var(--bad); }
    .failed .message { font-weight: 600; color: var(--bad); }
    .failed code { color: var(--text); }

    .time {
      display: grid; grid-template-columns: 5em minmax(0, 1fr); gap: .6rem; align-items: center;
    }
    .figure { text-align: right; font-variant-numeric: tabular-nums; white-space: nowrap; }
    .track { height: .75em; }
    .bar {
      display: block; height: 100%; min-width: 1px; background: var(--bar); border-radius: 2px;
      print-color-adjust: exact; -webkit-print-color-adjust: exact;
    }
    .failed .bar { background: var(--bad); }
    .note { border-left: 4px solid var(--warn); background: var(--raised); padding: .6rem 1rem; }

    @media screen and (max-width: 820px) {
      body { padding: 1rem; }
      .list li { grid-template-columns: minmax(0, 1fr); }
      table, tbody { display: block; }
      thead { display: none; }
      tr {
        display: grid; grid-template-columns: auto 1fr auto; gap: 0 .8rem;
        padding: .5rem .3rem .6rem .6rem; border-bottom: 1px solid var(--line);
      }
      td, .nested td.call { display: block; border: 0; padding: 0; min-width: 0; }
      .figure { text-align: left; }
      .list .time, .list .message { padding-left: 2.8em; }
      td.number, td.start, td.thread { font-size: .85em; }
      td.thread::before { content: "thread "; }
      td.call, td.arguments, td.status, td.duration { grid-column: 1 / -1; }
      tr.nested { margin-left: calc(min(var(--depth), 4) * 1.2rem); }
      .nested td.call::before { position: static; margin-right: .4em; }
      tr.failed { background: var(--bad-page); box-shadow: inset 5px 0 0 var(--bad); }
      tr.failed td:first-child { box-shadow: none; }
    }
    @media print {
      :root {
        color-scheme: light; --page: #ffffff; --text: #000000; --quiet: #444444; --line: #bbbbbb;
        --raised: #ffffff; --link: #000000; --bar: #777777; --bad: #8e0f0b; --bad-page: #ffffff;
        --warn: #444444; --mark-text: #ffffff;
      }
      @page { size: landscape; margin: 12mm; }
      body { padding: 0; font-size: 8pt; }
      th { position: static; }
      tr, .list li { break-inside: avoid; }
      .long { max-height: none; }
      .mark { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
    }
  </style>
</xsl:template>

</xsl:stylesheet>
